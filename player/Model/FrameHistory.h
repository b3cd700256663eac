// The times of the last frames.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>

namespace tarnwick::player {

class FrameHistory {
  public:
    static constexpr std::size_t most = 240; // frames

    void add(double seconds) {
        if (frames_.size() == most)
            frames_.pop_front();
        frames_.push_back(seconds);
    }
    void clear() { frames_.clear(); }

    const std::deque<double>& frames() const { return frames_; } // seconds, the newest last
    double longest() const {                                     // 0 without frames
        return frames_.empty() ? 0 : *std::ranges::max_element(frames_);
    }

  private:
    std::deque<double> frames_;
};

} // namespace tarnwick::player
