// Says when a view's next frame is due.
#pragma once

namespace tarnwick {

// Frames keep to a grid of 1/fps seconds, so that a frame drawn a little late does not delay those
// after it. Frames missed by a whole interval or more are not made up for.
class FrameClock {
  public:
    explicit FrameClock(double framesPerSecond) : interval_(1 / framesPerSecond) {}

    // Seconds from `now` (of the host clock) until the next frame is due; 0 when it is.
    double secondsUntilDue(double now) const { return now < due_ ? due_ - now : 0; }

    // A frame was begun at `now`, which was due.
    void begin(double now) { due_ = now - due_ < interval_ ? due_ + interval_ : now + interval_; }

  private:
    double interval_; // seconds
    double due_ = 0;  // seconds of the host clock; every clock is past it at first
};

} // namespace tarnwick
