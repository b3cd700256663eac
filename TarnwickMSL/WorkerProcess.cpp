#include "TarnwickMSL/WorkerProcess.h"

#include "TarnwickBase/InstalledFiles.h"
#include "TarnwickBase/WaitedTime.h"

#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <string>
#include <unistd.h>

extern char** environ; // unistd.h declares it in GNU mode only

namespace tarnwick::msl {
namespace {

// The time limit of an answer. Time while this process is stopped does not count.
class Limit {
  public:
    explicit Limit(std::chrono::milliseconds limit) : limit(limit) {}

    std::chrono::milliseconds left() {
        return std::chrono::ceil<std::chrono::milliseconds>(limit - waited.look());
    }
    bool isOver() { return left().count() <= 0; }

  private:
    const std::chrono::milliseconds limit;
    WaitedTime waited;
};

// Waits until the connection is ready; false at the limit or on an error.
bool waitFor(int connection, short events, Limit& limit) {
    for (;;) {
        const std::chrono::milliseconds left = limit.left();
        if (left.count() <= 0)
            return false;
        const auto step = std::min<std::chrono::milliseconds>(left, WaitedTime::longestStep);
        pollfd waiting{.fd = connection, .events = events, .revents = 0};
        const int ready = poll(&waiting, 1, static_cast<int>(step.count()));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
}

bool sendAll(int connection, std::string_view bytes, Limit& limit) {
    while (!bytes.empty()) {
        if (!waitFor(connection, POLLOUT, limit))
            return false;
        const ssize_t sent =
            send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno != EINTR && errno != EAGAIN)
            return false;
    }
    return true;
}

bool receiveAll(int connection, char* to, std::size_t size, Limit& limit) {
    while (size > 0) {
        if (!waitFor(connection, POLLIN, limit))
            return false;
        const ssize_t got = recv(connection, to, size, MSG_DONTWAIT);
        if (got == 0 || (got < 0 && errno != EINTR && errno != EAGAIN))
            return false;
        if (got > 0) {
            to += got;
            size -= static_cast<std::size_t>(got);
        }
    }
    return true;
}

// Takes at most twice the memory of what comes, whatever `size` says.
bool receiveAll(int connection, std::string& to, std::size_t size, Limit& limit) {
    constexpr std::size_t leastPiece = 1 << 16;
    while (to.size() < size) {
        const std::size_t begin = to.size();
        to.resize(begin + std::min(size - begin, std::max(begin, leastPiece)));
        if (!receiveAll(connection, to.data() + begin, to.size() - begin, limit))
            return false;
    }
    return true;
}

// The child has the connection as its standard input, no other file of this process, default
// signals, and a process group of its own, so that a terminal's Ctrl-C does not reach it.
// -1 if it cannot be made.
pid_t spawn(char* const* words, int childEnd) noexcept {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    int fault = posix_spawn_file_actions_adddup2(&files, childEnd, STDIN_FILENO);
    fault |= posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (!std::getenv("TARNWICK_MSL_WORKER_TALKS"))
        fault |= posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // A host of the library may have files without FD_CLOEXEC, which would live on in the child.
    fault |= posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                              POSIX_SPAWN_SETPGROUP);
    pid_t child = -1;
    if (fault != 0 || posix_spawn(&child, words[0], &files, &attributes, words, environ) != 0)
        child = -1;
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    return child;
}

// Why a child ended by itself while it worked on a request.
WorkerFault causeOf(std::optional<int> status) {
    if (status && WIFSIGNALED(*status) && WTERMSIG(*status) == SIGKILL)
        return WorkerFault::killed;
    if (!status || !WIFEXITED(*status))
        return WorkerFault::stopped;
    switch (static_cast<WorkerEnd>(WEXITSTATUS(*status))) {
    case WorkerEnd::withoutMemory:
        return WorkerFault::full;
    case WorkerEnd::withoutStack:
        return WorkerFault::deep;
    case WorkerEnd::tooLarge:
        return WorkerFault::large;
    }
    return WorkerFault::stopped;
}

} // namespace

std::filesystem::path workerProgram() {
    if (const char* named = std::getenv("TARNWICK_MSL_WORKER"))
        return named;
    return installedFile(InstalledFile::compilerWorker);
}

WorkerProcess::~WorkerProcess() {
    if (connection >= 0)
        close(connection);
}

bool WorkerProcess::start() {
    if (child > 0)
        return true;
    // All memory first: nothing below throws, so no end of the connection is left open.
    std::string file = (program.empty() ? workerProgram() : program).string();
    std::string serve = "--serve", form = wireForm();
    char* const words[] = {file.data(), serve.data(), form.data(), nullptr};
    int ends[2];
    if (file.empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    child = spawn(words, ends[1]);
    close(ends[1]);
    if (child > 0)
        connection = ends[0];
    else
        close(ends[0]);
    return child > 0;
}

std::optional<int> WorkerProcess::end() {
    std::optional<int> status;
    if (child > 0) {
        kill(child, SIGKILL); // changes nothing for a child that ends already
        int how = 0;
        pid_t waited = 0;
        while ((waited = waitpid(child, &how, 0)) < 0 && errno == EINTR) {
        }
        if (waited == child)
            status = how;
    }
    if (connection >= 0)
        close(connection);
    child = connection = -1;
    readsFiles.reset();
    return status;
}

std::variant<Compilation, WorkerFault> WorkerProcess::ask(const Request& request) {
    try {
        return exchange(request);
    } catch (...) { // no memory: the connection may have half a message
        end();
        throw;
    }
}

std::variant<Compilation, WorkerFault> WorkerProcess::exchange(const Request& request) {
    if (readsFiles && *readsFiles == request.includes.empty())
        end();
    if (!start())
        return WorkerFault::missing;
    readsFiles = !request.includes.empty();
    Limit limit{std::chrono::milliseconds(request.limitMilliseconds)};
    // The child is late, or has closed its connection: its end has begun, so that end() does not
    // change its status.
    auto fault = [&](WorkerFault otherwise) {
        const bool isLate = limit.isOver();
        const std::optional<int> status = end();
        return isLate                              ? WorkerFault::late
               : otherwise == WorkerFault::stopped ? causeOf(status)
                                                   : otherwise;
    };
    const std::string bytes = toBytes(request);
    auto size = static_cast<std::uint32_t>(bytes.size());
    const std::string_view head(reinterpret_cast<const char*>(&size), sizeof size);
    char isRead = 0;
    if (!sendAll(connection, head, limit) || !sendAll(connection, bytes, limit) ||
        !receiveAll(connection, &isRead, 1, limit))
        return fault(WorkerFault::gone);
    if (!receiveAll(connection, reinterpret_cast<char*>(&size), sizeof size, limit))
        return fault(WorkerFault::stopped);
    std::string answer;
    if (size <= mostAnswer && !receiveAll(connection, answer, size, limit))
        return fault(WorkerFault::stopped);
    if (std::optional<Compilation> compilation = compilationFrom(answer))
        return std::move(*compilation);
    end(); // not an answer of our compiler
    return WorkerFault::stopped;
}

} // namespace tarnwick::msl
