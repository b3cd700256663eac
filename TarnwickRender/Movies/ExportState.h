// What the two tasks of an export share: the first failure of either, and how far they are.
#pragma once

#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickRender/ExportError.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>

namespace tarnwick {

// Any thread may call.
class ExportState {
  public:
    // Keeps `error` unless one is kept already.
    void fail(const ExportError& error);
    bool hasFailed() const;
    void throwIfFailed() const;

    // How many frames have their picture, so that the sound runs ahead by a little only.
    void setPictures(std::int64_t frames) { pictures_ = frames; }
    std::int64_t pictures() const { return pictures_; }

    // A loop of an episode was ended.
    void noteLoopBudget() { hitLoopBudget_ = true; }
    bool hitLoopBudget() const { return hitLoopBudget_; }

  private:
    mutable std::mutex mutex_; // held only to read or write the failure
    std::optional<ExportError> failure_;
    std::atomic<std::int64_t> pictures_ = 0;
    std::atomic<bool> hitLoopBudget_ = false;
};

// What the writer says that went wrong.
ExportError writerFailure(const MovieWriter& writer);

// Waits until `input`, one of the writer's, takes more; whether it does. False, with a failure
// recorded: there was one already, the writer failed, or it took longer than `patience`, to which
// the time that this process was stopped does not count (WaitedTime).
bool waitUntilReady(const MovieInput& input, const MovieWriter& writer, ExportState& state,
                    std::chrono::nanoseconds patience);

} // namespace tarnwick
