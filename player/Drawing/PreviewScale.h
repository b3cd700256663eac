// Chooses how much smaller than full size a picture is drawn, so that slow devices show enough
// frames.
#pragma once

#include <optional>

namespace tarnwick::player {

// One thread at a time.
class PreviewScale {
  public:
    static constexpr double longestFrame = 1.0 / 30; // seconds
    static constexpr int largest = 4;                // both sides are divided by 1 to 4

    int divisor() const { return fixed_.value_or(divisor_); }

    // Absent: chosen from the times of the frames.
    void fix(std::optional<int> divisor);
    // The next program or size starts with the present divisor.
    void restart() { count_ = 0; }
    // A frame drawn with divisor() took `seconds`. The divisor changes after several frames that
    // are too slow, or that would be fast enough at the next larger size.
    void add(double seconds);

  private:
    int divisor_ = 1;
    std::optional<int> fixed_;
    int count_ = 0;     // consecutive frames that ask for a change; below 0: for a larger picture
    int patience_ = 60; // frames before the picture becomes larger; grows if that was too slow
    int sinceLarger_ = 0;
};

} // namespace tarnwick::player
