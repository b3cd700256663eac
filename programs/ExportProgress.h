// How far the export of a movie is.
#pragma once

#include "programs/ProgressBar.h"

#include <chrono>
#include <cstdint>

namespace tarnwick {

// On standard error: where that is a terminal a bar with frames, frames a second and the time left,
// elsewhere a line of the same every ten seconds.
class ExportProgress {
  public:
    void show(std::int64_t done, std::int64_t total); // frames, in [0, total]

  private:
    using Clock = std::chrono::steady_clock;

    ProgressBar bar_{"Frame"};
    Clock::time_point begin_ = Clock::now();
    Clock::time_point lastLine_ = begin_;
};

} // namespace tarnwick
