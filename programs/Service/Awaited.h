// Waits for other threads without delaying Ctrl-C.
#pragma once

#include "TarnwickBase/EndSignals.h"
#include "TarnwickCore/Service/ServiceError.h"
#include "programs/CommandLine/CommandError.h"

#include <chrono>
#include <functional>
#include <future>
#include <stop_token>

namespace tarnwick {

// The result of the future that call(std::stop_token) returns; calls `meanwhile` many times per
// second until then. Ctrl-C stops the call and ends the command.
template <class Call>
auto awaited(HeldSignals& signals, const Call& call, const std::function<void()>& meanwhile = {}) {
    std::stop_source stop;
    auto future = call(stop.get_token());
    while (future.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        if (signals.arrived())
            stop.request_stop();
        if (meanwhile)
            meanwhile();
    }
    try {
        return future.get();
    } catch (const std::exception&) {
        if (signals.arrived()) {
            signals.answer(); // the error reports it
            failure("It was cancelled.");
        }
        throw;
    }
}

} // namespace tarnwick
