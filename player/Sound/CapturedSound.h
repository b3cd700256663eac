// The last samples of a sound that comes in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

namespace tarnwick::player {

// Any thread.
class CapturedSound {
  public:
    explicit CapturedSound(std::size_t kept) : samples_(kept) {}

    void hear(std::span<const float> mono);
    // The last `kept` samples; silence before the first.
    std::vector<float> samples() const;
    // How many there were so far.
    std::int64_t heard() const;

  private:
    mutable std::mutex mutex_;
    std::vector<float> samples_; // a ring
    std::size_t next_ = 0;
    std::int64_t heard_ = 0;
};

} // namespace tarnwick::player
