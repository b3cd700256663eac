// The levels of the sound that episodes react to, on their way to the drawing thread.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace tarnwick::player {

// As an AudioAnalyzer gives them.
struct SoundLevels {
    std::array<float, 4> bands{}; // low, mid, high, all; [0, 1]
    std::vector<float> spectrum;  // spectrumBins values in [0, 1]

    bool operator==(const SoundLevels&) const = default;
};

// Holds the newest levels, and keeps earlier ones for a recording. Any thread; a call waits for
// another one only while that copies pointers.
class LiveLevels {
  public:
    struct Kept {
        double host = 0; // seconds
        std::shared_ptr<const SoundLevels> levels;
    };

    // `host`: the seconds from which they are shown, not before those of the last call.
    void show(std::shared_ptr<const SoundLevels> levels, double host = 0) {
        const std::lock_guard lock(mutex_);
        if (isKeeping_ && (kept_.empty() || host - kept_.back().host >= keptInterval))
            kept_.push_back({host, levels});
        newest_.swap(levels);
    }
    // Keeps the levels of each keptInterval from now on, or no longer.
    void keep(bool isKeeping) {
        const std::lock_guard lock(mutex_);
        isKeeping_ = isKeeping;
        kept_.clear();
    }
    // Those that were kept since the last call, in order.
    std::vector<Kept> takeKept() {
        const std::lock_guard lock(mutex_);
        return std::exchange(kept_, {});
    }
    // Null before the first.
    std::shared_ptr<const SoundLevels> newest() const {
        const std::lock_guard lock(mutex_);
        return newest_;
    }

  private:
    mutable std::mutex mutex_;
    std::shared_ptr<const SoundLevels> newest_;
    static constexpr double keptInterval = 0.015; // seconds; a little less than a frame
    bool isKeeping_ = false;
    std::vector<Kept> kept_;
};

} // namespace tarnwick::player
