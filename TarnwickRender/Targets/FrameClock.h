// Says when a view's next frame is due.
#pragma once

namespace tarnwick {

// Frames are due at multiples of 1/fps seconds, so a frame drawn a little late does not delay the
// frames after it. Frames that are late by a whole interval or more are skipped.
class FrameClock {
  public:
    explicit FrameClock(double framesPerSecond) : interval_(1 / framesPerSecond) {}

    // Seconds from `now` (of the host clock) until the next frame is due; 0 if it is due.
    double secondsUntilDue(double now) const { return now < due_ ? due_ - now : 0; }

    // A due frame was begun at `now`.
    void begin(double now) { due_ = now - due_ < interval_ ? due_ + interval_ : now + interval_; }

  private:
    double interval_; // seconds
    double due_ = 0;  // seconds of the host clock; every clock is past it at first
};

} // namespace tarnwick
