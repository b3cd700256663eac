// A sound over the time of an episode.
#pragma once

#include <span>

namespace tarnwick::player {

// One thread at a time calls samples().
class TimedSound {
  public:
    virtual ~TimedSound() = default;

    // Writes interleaved stereo, left first, all finite: frame i is the one at `start` + i / `rate`
    // seconds. `rate` is not 0; below 0: backwards. False if it is not there yet: it will be a
    // little later.
    virtual bool samples(double start, double rate, std::span<float> stereo) = 0;
};

} // namespace tarnwick::player
