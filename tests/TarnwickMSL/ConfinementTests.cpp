#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Confinement/Confinement.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tarnwick::msl {
namespace {

constexpr int notConfined = 77;

// What the process does after it was confined; its exit status.
int statusOf(const std::function<int()>& work, FileAccess access = FileAccess::none) {
    const pid_t child = fork();
    if (child == 0)
        _exit(confine(access) ? work() : notConfined);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

#define CONFINED_OR_SKIPPED(status)                                                                \
    if ((status) == notConfined)                                                                   \
    GTEST_SKIP() << "this kernel, or a sanitizer, allows no filter of system calls"

TEST(Confinement, refusesFilesNetworkProgramsAndOtherProcesses) {
    const pid_t parent = getpid();
    const std::vector<std::pair<const char*, std::function<bool()>>> attempts{
        {"open", [] { return open("/etc/passwd", O_RDONLY) >= 0; }},
        {"create", [] { return open("confined", O_WRONLY | O_CREAT, 0600) >= 0; }},
        {"remove", [] { return unlink("confined") == 0; }},
        {"look",
         [] {
             struct stat found {};
             return stat("/", &found) == 0;
         }},
        {"list", [] { return open("/", O_RDONLY | O_DIRECTORY) >= 0; }},
        {"network", [] { return socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
        {"local socket", [] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
        {"fork", [] { return fork() >= 0; }},
        {"program", [] { return execl("/bin/true", "true", nullptr) == 0; }},
        {"signal", [parent] { return kill(parent, 0) == 0; }},
        {"trace", [parent] { return ptrace(PTRACE_ATTACH, parent, nullptr, nullptr) == 0; }},
        {"priority", [] { return nice(1) != -1 || errno != EPERM; }},
        {"code",
         [] {
             return mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1,
                         0) != MAP_FAILED;
         }},
        {"code of memory",
         [] {
             void* page = mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
             return mprotect(page, 4096, PROT_READ | PROT_EXEC) == 0;
         }},
    };
    const std::set<std::string> reading{"open", "look", "list"};
    for (const FileAccess access : {FileAccess::none, FileAccess::reading})
        for (const auto& [name, succeeds] : attempts) {
            const int status =
                statusOf([&attempt = succeeds] { return attempt() ? 1 : 0; }, access);
            CONFINED_OR_SKIPPED(status);
            EXPECT_EQ(status, access == FileAccess::reading && reading.contains(name)) << name;
        }
}

// Also for a thread from before.
TEST(Confinement, leavesMemoryThreadsTheClockAndOpenFiles) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int status = statusOf([&ends] {
        std::vector<char> much(64 << 20, 'a');
        bool isWritten = false;
        std::thread([&] { isWritten = write(ends[1], much.data(), 1) == 1; }).join();
        const auto start = std::chrono::steady_clock::now();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const bool hasTime = std::chrono::steady_clock::now() > start;
        return isWritten && hasTime ? 0 : 1;
    });
    CONFINED_OR_SKIPPED(status);
    EXPECT_EQ(status, 0);
    close(ends[0]);
    close(ends[1]);
    const int aborted = statusOf([] {
        std::abort();
        return 0;
    });
    EXPECT_EQ(aborted, 128 + SIGABRT);
}

// The value of a line of /proc/PROCESS/status.
std::string valueOf(const std::filesystem::path& process, const std::string& name) {
    std::ifstream lines(process / "status");
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name + ":\t"))
            return line.substr(name.size() + 2);
    return {};
}

TEST(Confinement, holdsForTheCompiler) {
    const int status = statusOf([] { return 0; });
    CONFINED_OR_SKIPPED(status);
    ASSERT_FALSE(compile("kernel void nothing() {}\n").failed);
    std::vector<std::string> modes;
    for (const auto& process : std::filesystem::directory_iterator("/proc"))
        if (valueOf(process.path(), "PPid") == std::to_string(getpid()) &&
            valueOf(process.path(), "Name").starts_with("tarnwick-msl"))
            modes.push_back(valueOf(process.path(), "Seccomp"));
    EXPECT_EQ(modes, std::vector<std::string>{"2"}); // a filter
}

} // namespace
} // namespace tarnwick::msl
