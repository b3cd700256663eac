#include "saver/Installing/InstallTurn.h"

#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace tarnwick {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds longestWait{8};
constexpr std::chrono::milliseconds step{10};

} // namespace

InstallTurn::InstallTurn(const std::filesystem::path& savers) {
    std::filesystem::create_directories(savers);
    folder_ = open(savers.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto deadline = Clock::now() + longestWait;
    while (folder_ >= 0 && flock(folder_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return; // a file system without locks
        if (Clock::now() > deadline) {
            close(folder_);
            throw InstallTurnError("Another program installs or removes a saver in " +
                                   savers.string() + " at this time.");
        }
        std::this_thread::sleep_for(step);
    }
}

InstallTurn::~InstallTurn() {
    if (folder_ >= 0)
        close(folder_);
}

} // namespace tarnwick
