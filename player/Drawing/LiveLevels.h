// The levels of the sound that episodes react to, on their way to the drawing thread.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <vector>

namespace tarnwick::player {

// As an AudioAnalyzer gives them.
struct SoundLevels {
    std::array<float, 4> bands{}; // low, mid, high, all; [0, 1]
    std::vector<float> spectrum;  // spectrumBins values in [0, 1]

    bool operator==(const SoundLevels&) const = default;
};

// Holds the newest levels. Any thread; nobody waits for longer than the copy of a pointer.
class LiveLevels {
  public:
    void show(std::shared_ptr<const SoundLevels> levels) {
        const std::lock_guard lock(mutex_);
        newest_.swap(levels);
    }
    // Null before the first.
    std::shared_ptr<const SoundLevels> newest() const {
        const std::lock_guard lock(mutex_);
        return newest_;
    }

  private:
    mutable std::mutex mutex_;
    std::shared_ptr<const SoundLevels> newest_;
};

} // namespace tarnwick::player
