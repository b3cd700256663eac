#include "programs/HeldSignals.h"

#include <array>
#include <csignal>

namespace tarnwick {
namespace {

constexpr std::array numbers{SIGINT, SIGTERM, SIGHUP};

// Blocking them in this thread would not do: the drivers have threads of their own, which would
// take them.
volatile std::sig_atomic_t waiting = 0;
std::array<struct sigaction, numbers.size()> before;

void remember(int number) {
    waiting = number;
}

} // namespace

HeldSignals::HeldSignals() {
    waiting = 0;
    struct sigaction action {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESTART;
    for (std::size_t at = 0; at < numbers.size(); ++at) {
        sigaction(numbers[at], nullptr, &before[at]);
        if (before[at].sa_handler != SIG_IGN)
            sigaction(numbers[at], &action, nullptr);
    }
}

bool HeldSignals::arrived() const {
    return waiting != 0;
}

void HeldSignals::forget() {
    waiting = 0;
}

HeldSignals::~HeldSignals() {
    for (std::size_t at = 0; at < numbers.size(); ++at)
        sigaction(numbers[at], &before[at], nullptr);
    if (waiting != 0)
        std::raise(waiting);
}

} // namespace tarnwick
