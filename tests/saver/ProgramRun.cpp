#include "tests/saver/ProgramRun.h"

#include "tests/Waiting.h"

#include <sys/prctl.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace tarnwick {

ProgramRun::ProgramRun(const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& environment) {
    // A file, not a pipe: nobody reads while the program runs.
    char pattern[] = "/tmp/saver-output-XXXXXX";
    output_ = mkostemp(pattern, O_CLOEXEC);
    unlink(pattern);
    std::vector<char*> list{const_cast<char*>(SAVER_PROGRAM)};
    for (const std::string& argument : arguments)
        list.push_back(const_cast<char*>(argument.c_str()));
    list.push_back(nullptr);
    process_ = fork();
    if (process_ != 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    unsetenv("DISPLAY");
    unsetenv("XSCREENSAVER_WINDOW");
    for (const auto& [name, value] : environment)
        setenv(name.c_str(), value.c_str(), 1);
    dup2(output_, STDOUT_FILENO);
    dup2(output_, STDERR_FILENO);
    execv(SAVER_PROGRAM, list.data());
    _exit(127);
}

ProgramRun::~ProgramRun() {
    if (isRunning()) {
        signal(SIGKILL);
        waitForEnd();
    }
    close(output_);
}

void ProgramRun::signal(int number) const {
    kill(process_, number);
}

bool ProgramRun::isRunning() {
    return waitForEnd(0) == -1;
}

int ProgramRun::waitForEnd(double seconds) {
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds * patience());
    while (status_ == -1) {
        int status = 0;
        if (waitpid(process_, &status, WNOHANG) == process_)
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        else if (std::chrono::steady_clock::now() >= end)
            return -1;
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return status_;
}

std::string ProgramRun::said() {
    std::string text(1 << 20, '\0');
    const ssize_t length = pread(output_, text.data(), text.size(), 0);
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return text;
}

} // namespace tarnwick
