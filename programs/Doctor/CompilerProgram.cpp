#include "programs/Doctor/CompilerProgram.h"

#include "TarnwickMSL/WorkerProcess.h"

#include <sys/wait.h>

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tarnwick {
namespace {

// The program's standard output; standard error is dropped.
std::string outputOf(std::string program, std::string word) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return {};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    char* words[] = {program.data(), word.data(), nullptr};
    pid_t child = -1;
    const bool isStarted =
        posix_spawn(&child, program.c_str(), &files, nullptr, words, environ) == 0;
    posix_spawn_file_actions_destroy(&files);
    close(ends[1]);
    std::string text;
    char bytes[256];
    for (ssize_t got; isStarted && (got = read(ends[0], bytes, sizeof bytes)) > 0;)
        text.append(bytes, static_cast<std::size_t>(got));
    close(ends[0]);
    while (isStarted && waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return text;
}

} // namespace

std::optional<std::string> compilerRelease() {
    const std::string text = outputOf(msl::workerProgram().string(), "--version");
    if (text.empty())
        return std::nullopt;
    return text.substr(0, text.find('\n'));
}

bool isCompilerConfined() {
    return outputOf(msl::workerProgram().string(), "--confine") == "confined\n";
}

} // namespace tarnwick
