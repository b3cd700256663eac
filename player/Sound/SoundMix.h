// What the device plays: the rendered frames, mixed at the volume of the user.
#pragma once

#include "player/Sound/SampleRing.h"
#include "player/Sound/SoundClock.h"

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

namespace tarnwick::player {

struct SoundVolume {
    float all = 1;        // linear gain, [0, 1]
    bool isMuted = false; // of all
    bool hasFile = true;  // whether the media file is heard

    bool operator==(const SoundVolume&) const = default;
};

// Whether the sound came in time, since the device was opened or continued: what is late on our
// side are missing frames, what is late in the system are long waits.
struct SoundFigures {
    std::int64_t taken = 0;   // frames that the device took
    std::int64_t missing = 0; // of them, that the renderer had not written, after its first ones
    double longestWait = 0;   // seconds between two calls of the device, after its first second

    bool operator==(const SoundFigures&) const = default;
};

// fill() belongs to the device's thread: it takes no lock, and memory only until blocks have
// reached their largest size. The other functions belong to any thread.
class SoundMix {
  public:
    explicit SoundMix(SampleRing& ring, SoundClock& clock) : ring_(ring), clock_(clock) {}

    // Interleaved stereo in [-1, 1], at `host` seconds. Changes of the volume and missing frames
    // are ramps, so that they do not click.
    void fill(std::span<float> stereo, double host);

    void setVolume(const SoundVolume& volume);
    // Frames that the renderer did not have in time, so far.
    std::int64_t missing() const { return missing_; }
    SoundFigures figures() const { return {taken_, late_, longestWait_}; }
    // The device was opened, or continues after a pause: figures() begins again.
    void restart() { isNew_ = true; }

  private:
    void fadeOut(std::int64_t from);
    void countFrames(std::int64_t wanted, std::int64_t there, double host);

    SampleRing& ring_;
    SoundClock& clock_;
    std::atomic<float> ownVolume_ = 1, fileVolume_ = 1;
    std::atomic<std::int64_t> missing_ = 0, taken_ = 0, late_ = 0;
    std::atomic<double> longestWait_ = 0;
    std::atomic<bool> isNew_ = true;
    bool isBegun_ = false; // a frame was there since isNew_
    double lastCall_ = 0;  // host seconds
    std::vector<SoundFrame> frames_;
    float own_ = 0, file_ = 0; // the present gains
    SoundFrame last_;          // fades out where frames are missing
};

} // namespace tarnwick::player
