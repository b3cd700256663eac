// The device's clock in terms of the host's: which frame is heard when.
#pragma once

#include "player/Sound/SampleRing.h"

#include <atomic>
#include <cstdint>

namespace tarnwick::player {

// A device takes frames in blocks, at moments that vary by milliseconds, and its crystal differs
// from the host's by up to some thousandths of a percent. The clock follows the mean of the moments
// over seconds. One thread calls taken(), any thread the other functions.
class SoundClock {
  public:
    // The device took `count` frames that end before number `end`, at `host` seconds.
    void taken(std::int64_t end, std::int64_t count, double host);
    // The device stopped: the next call of taken() starts anew.
    void restart() { isNew_ = true; }

    // Seconds from the moment a frame is taken to the moment it is heard.
    void setLatency(double seconds) { latency_ = seconds; }

    // Host seconds at which the frame is heard.
    double hostOf(std::int64_t number) const;
    // The number of the frame that is heard at `host`.
    std::int64_t numberAt(double host) const;

  private:
    std::atomic<double> offset_ = 0; // host seconds at which number 0 would have been taken
    std::atomic<double> latency_ = 0;
    std::atomic<bool> isNew_ = true;
    double age_ = 0; // seconds since the start
    int jumps_ = 0;  // measurements in a row that are far from the mean
};

} // namespace tarnwick::player
