// The progress of an export.
#pragma once

#include "programs/Terminal/ProgressBar.h"

#include <chrono>
#include <cstdint>

namespace tarnwick {

// On standard error: frames, frames per second and the time left.
class ExportProgress {
  public:
    void show(std::int64_t done, std::int64_t total); // frames, in [0, total]
    void hide() { bar_.hide(); }                      // until the next call of show()

    std::int64_t total() const { return total_; } // frames, after the first call

  private:
    using Clock = std::chrono::steady_clock;

    ProgressBar bar_{"Frame"};
    Clock::time_point begin_ = Clock::now();
    std::int64_t total_ = 0;
};

} // namespace tarnwick
