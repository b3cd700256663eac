#include "saver/ScreenProcesses.h"

#include "TarnwickBase/EndSignals.h"
#include "saver/HostError.h"

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace tarnwick {
namespace {

constexpr int endTime = 3000; // milliseconds that a process has to end itself

// A child process; ended and waited for by the destructor.
class ScreenProcess {
  public:
    explicit ScreenProcess(std::vector<std::string> words) {
        std::vector<char*> pointers;
        for (std::string& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        id_ = fork();
        if (id_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            execv("/proc/self/exe", pointers.data());
            _exit(127);
        }
        if (id_ < 0)
            throw HostError(std::string("No process can be started: ") + std::strerror(errno) +
                            ".");
        descriptor_ = static_cast<int>(syscall(SYS_pidfd_open, id_, 0));
    }
    ~ScreenProcess() {
        pollfd ended = entry();
        kill(id_, SIGTERM);
        if (poll(&ended, 1, endTime) <= 0)
            kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
        close(descriptor_);
    }
    ScreenProcess(const ScreenProcess&) = delete;
    ScreenProcess& operator=(const ScreenProcess&) = delete;

    // Readable when the process has ended.
    pollfd entry() const { return {.fd = descriptor_, .events = POLLIN, .revents = 0}; }
    void askToEnd() const { kill(id_, SIGTERM); }

  private:
    pid_t id_ = -1;
    int descriptor_ = -1;
};

} // namespace

void coverScreens(unsigned screens, std::span<const char* const> words) {
    HeldSignals signals;
    std::vector<std::string> line{"tarnwick-saver"};
    line.insert(line.end(), words.begin(), words.end());
    line.insert(line.end(), {"--output", ""});
    std::vector<std::unique_ptr<ScreenProcess>> processes;
    std::vector<pollfd> entries{{.fd = signals.descriptor(), .events = POLLIN, .revents = 0}};
    for (unsigned screen = 0; screen < screens; ++screen) {
        line.back() = std::to_string(screen);
        processes.push_back(std::make_unique<ScreenProcess>(line));
        entries.push_back(processes.back()->entry());
    }
    while (poll(entries.data(), entries.size(), -1) < 0 && errno == EINTR) {
    }
    for (const auto& process : processes)
        process->askToEnd(); // all at once
    processes.clear();
    signals.answer();
}

} // namespace tarnwick
