#include "saver/EndSignals.h"

#include "TarnwickBase/Precondition.h"

#include <sys/signalfd.h>

#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace tarnwick {
namespace {

sigset_t endSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&set, number);
    return set;
}

} // namespace

EndSignals::EndSignals() {
    const sigset_t set = endSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    descriptor_ = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    precondition(descriptor_ >= 0, "A process has room for one more descriptor when it starts.");
}

EndSignals::~EndSignals() {
    // One that has arrived was answered: it must not end the process now.
    signalfd_siginfo taken{};
    while (read(descriptor_, &taken, sizeof taken) > 0) {
    }
    close(descriptor_);
    const sigset_t set = endSignals();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

bool EndSignals::haveArrived() const {
    pollfd entry{.fd = descriptor_, .events = POLLIN, .revents = 0};
    return poll(&entry, 1, 0) > 0;
}

} // namespace tarnwick
