// The state that the two tasks of an export share: the first error, and their progress.
#pragma once

#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickRender/ExportError.h"
#include "TarnwickRender/Movies/ExportGround.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace tarnwick {

// Any thread may call.
class ExportState {
  public:
    // Keeps only the first error.
    void fail(const ExportError& error);
    bool hasFailed() const;
    void throwIfFailed() const;

    // Frames that are drawn. The sound waits for them, so that it is at most ten seconds ahead.
    void setPictures(std::int64_t frames) { pictures_ = frames; }
    std::int64_t pictures() const { return pictures_; }

    // A loop of an episode was ended.
    void noteLoopBudget() { hitLoopBudget_ = true; }
    bool hitLoopBudget() const { return hitLoopBudget_; }

    // The ground of the export. When its device is lost, the pictures' task sets another one.
    void setGround(std::shared_ptr<const ExportGround> ground);
    // Another ground than `lost`. Blocks until there is one; null if the export has failed.
    std::shared_ptr<const ExportGround> groundAfter(const ExportGround& lost);
    bool isGroundWanted() const; // a call of groundAfter() waits

  private:
    mutable std::mutex mutex_; // guards the next four
    std::condition_variable changes_;
    std::optional<ExportError> error_;
    std::shared_ptr<const ExportGround> ground_;
    bool isGroundWanted_ = false;
    std::atomic<std::int64_t> pictures_ = 0;
    std::atomic<bool> hitLoopBudget_ = false;
};

// The writer's error.
ExportError writerError(const MovieWriter& writer);

// Waits until `input` of the writer is ready. False if `state` then has an error: an earlier one,
// the writer's, or a wait longer than `patience`. Time during which the process was stopped is not
// counted (WaitedTime).
bool waitUntilReady(const MovieInput& input, const MovieWriter& writer, ExportState& state,
                    std::chrono::nanoseconds patience);

} // namespace tarnwick
