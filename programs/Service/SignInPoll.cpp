#include "programs/Service/SignInPoll.h"

#include "programs/Service/Awaited.h"

#include <algorithm>
#include <thread>

namespace tarnwick {
namespace {

constexpr std::chrono::minutes usualValidity{30};
constexpr double longestInterval = 60; // seconds

[[noreturn]] void expired() {
    failure("The code is no longer valid; tarnwick sign-in asks for another one.");
}

// Short sleeps, to notice Ctrl-C and changes of the clock.
void pause(double seconds, Date end, HeldSignals& signals) {
    using Clock = std::chrono::steady_clock;
    const auto next = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < next) {
        if (signals.arrived()) {
            signals.answer(); // the error reports it
            failure("It was cancelled.");
        }
        if (currentDate() >= end)
            expired();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

// Whether the next request may succeed.
bool passes(const ServiceError& refusal) {
    using Kind = ServiceError::Kind;
    return refusal.kind() == Kind::network || refusal.kind() == Kind::tooMany ||
           (refusal.kind() == Kind::server && refusal.status() >= 500);
}

} // namespace

Approved approvalOf(const LinkStart& start, const APIClient& client, HeldSignals& signals) {
    const Date end = start.expires.value_or(currentDate() + usualValidity);
    double interval = start.interval;
    while (true) {
        pause(interval, end, signals);
        try {
            LinkPoll poll = awaited(signals, [&](std::stop_token stop) {
                return client.pollLink(start.device, std::move(stop));
            });
            if (auto* approved = std::get_if<Approved>(&poll))
                return std::move(*approved);
            if (std::holds_alternative<LinkGone>(poll))
                expired();
        } catch (const ServiceError& refusal) {
            if (!passes(refusal))
                throw;
            if (refusal.kind() == ServiceError::Kind::tooMany)
                interval = std::min(2 * interval, longestInterval);
        }
    }
}

} // namespace tarnwick
