#include "TarnwickBase/EndSignals.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickBase/Unfinished.h"

#include <sys/eventfd.h>
#include <sys/signalfd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <memory>
#include <mutex>
#include <poll.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tarnwick {
namespace {

constexpr std::array numbers{SIGINT, SIGTERM, SIGHUP};
constexpr std::chrono::milliseconds longestHold{1500};
constexpr std::chrono::seconds longestRemoval{2};

// The state that the signal handler may access.
struct Arrival {
    std::atomic<int> number = 0;      // of the first signal that arrived; 0 before
    std::atomic<int> descriptor = -1; // an eventfd: readable once a signal has arrived
    std::atomic<int> holders = 0;
    std::atomic<int> status = -1; // to end with, instead of the signal; -1: none
};

constinit Arrival arrival;
std::array<struct sigaction, numbers.size()> before;

void signalEvent() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto ignored = write(arrival.descriptor, &one, sizeof one);
}

// The handler. The system prefers the main thread for it, which hears nothing while it waits in the
// kernel for a page of a file; so the watcher also takes what is pending (signal(7), signalfd(2)).
// The signals are not blocked instead, because every program that we start would inherit that.
void take(int number) {
    const int error = errno;
    int none = 0;
    arrival.number.compare_exchange_strong(none, number);
    signalEvent();
    errno = error;
}

void wipeTerminalLine() {
    constexpr std::string_view wipe = "\r\033[K"; // a progress bar may be on it
    if (isatty(STDERR_FILENO) == 1) [[maybe_unused]]
        const auto ignored = write(STDERR_FILENO, wipe.data(), wipe.size());
}

// Waits at most longestRemoval: a file system that does not answer, for instance of a network, must
// not keep the process. The next process that makes a temporary folder there removes what is left.
void removeUnfinishedInTime() {
    const auto isDone = std::make_shared<std::atomic<bool>>(false);
    try {
        std::thread([isDone] {
            removeUnfinished();
            *isDone = true;
        }).detach();
    } catch (const std::system_error&) { // no memory for a thread
        return removeUnfinished();
    }
    const auto deadline = std::chrono::steady_clock::now() + longestRemoval;
    while (!*isDone && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// Runs no destructors and no handlers of exit(): those of drivers wait for the GPU.
[[noreturn]] void endProcess() {
    static std::mutex once;
    once.lock(); // never unlocked: a second thread waits here for the end of the process
    removeUnfinishedInTime();
    wipeTerminalLine();
    if (arrival.status >= 0)
        _exit(arrival.status);
    const int number = arrival.number;
    struct sigaction usual {};
    usual.sa_handler = SIG_DFL;
    sigaction(number, &usual, nullptr);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, number);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    std::raise(number);
    _exit(128 + number);
}

} // namespace

EndSignals::EndSignals() {
    precondition(arrival.descriptor < 0, "a process has one EndSignals");
    arrival.descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    precondition(arrival.descriptor >= 0, "a new process can make an eventfd");
    sigset_t taken;
    sigemptyset(&taken);
    struct sigaction action {};
    action.sa_handler = take;
    action.sa_flags = SA_RESTART;
    for (std::size_t at = 0; at < numbers.size(); ++at) {
        sigaction(numbers[at], nullptr, &before[at]);
        if (before[at].sa_handler == SIG_IGN)
            continue;
        sigaddset(&taken, numbers[at]);
        sigaction(numbers[at], &action, nullptr);
    }
    pending_ = signalfd(-1, &taken, SFD_CLOEXEC | SFD_NONBLOCK);
    precondition(pending_ >= 0, "a new process can make a signalfd");
    watcher_ = std::thread([this] { watch(); });
}

void EndSignals::watch() const {
    std::array<pollfd, 2> events{{{.fd = arrival.descriptor, .events = POLLIN, .revents = 0},
                                  {.fd = pending_, .events = POLLIN, .revents = 0}}};
    while (events[0].revents == 0) { // take() makes it readable
        poll(events.data(), events.size(), -1);
        signalfd_siginfo signal{};
        if (events[1].revents != 0 && read(pending_, &signal, sizeof signal) == sizeof signal)
            take(static_cast<int>(signal.ssi_signo));
    }
    if (arrival.number == 0 && arrival.status < 0)
        return; // the process ends by itself
    const auto deadline = std::chrono::steady_clock::now() + longestHold;
    while ((arrival.holders > 0 || arrival.status >= 0) &&
           std::chrono::steady_clock::now() < deadline) {
        if (isOver_)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    endProcess();
}

EndSignals::~EndSignals() {
    isOver_ = true;
    signalEvent();
    watcher_.join();
    for (std::size_t at = 0; at < numbers.size(); ++at)
        sigaction(numbers[at], &before[at], nullptr);
    close(pending_);
    close(arrival.descriptor.exchange(-1));
}

void EndSignals::endIfArrived() const {
    if (arrival.number != 0)
        endProcess();
}

void endSoon(int status) {
    arrival.status = status;
    signalEvent();
}

HeldSignals::HeldSignals() {
    ++arrival.holders;
}

HeldSignals::~HeldSignals() {
    if (isAnswered_)
        return; // signals remain held until main() ends
    if (--arrival.holders == 0 && arrived())
        endProcess();
}

bool HeldSignals::arrived() const {
    return arrival.number != 0;
}

int HeldSignals::descriptor() const {
    return arrival.descriptor;
}

} // namespace tarnwick
