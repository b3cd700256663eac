// Chooses how many steps or frames are computed at once after a seek.
#pragma once

#include <algorithm>
#include <cstdint>

namespace tarnwick::player {

// How many steps take about a tenth of a second to compute. The thread answers after each part.
class WarmingPace {
  public:
    static constexpr double longestPart = 0.1; // seconds
    static constexpr std::int64_t most = 60;   // steps or frames

    std::int64_t count() const { return count_; }
    // Seconds of one, in the last part; 0 before the first.
    double seconds() const { return seconds_; }

    // `done` of them took `seconds`.
    void add(std::int64_t done, double seconds) {
        if (done < 1)
            return;
        seconds_ = seconds / static_cast<double>(done);
        const double fitting = longestPart / std::max(seconds_, longestPart / most);
        count_ = std::clamp<std::int64_t>(static_cast<std::int64_t>(fitting), 1, most);
    }

  private:
    std::int64_t count_ = 8; // at first, when their time is unknown
    double seconds_ = 0;
};

} // namespace tarnwick::player
