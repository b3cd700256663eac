// Waiting for what other threads do, without keeping Ctrl-C waiting.
#pragma once

#include "TarnwickBase/EndSignals.h"
#include "TarnwickCore/Service/ServiceError.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/TerminalText.h"

#include <chrono>
#include <functional>
#include <future>
#include <stop_token>

namespace tarnwick {

// What the future that call(std::stop_token) returns comes to; `meanwhile` is called many times a
// second until then. Ctrl-C stops the call and ends the command. The service's words in a failure
// are made fit for a terminal.
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
            signals.answer(); // the sentence says it
            failure("It was cancelled.");
        }
        try {
            throw;
        } catch (const ServiceError& refusal) {
            throw ServiceError(refusal.kind(), terminalText(refusal.what()), refusal.status());
        }
    }
}

} // namespace tarnwick
