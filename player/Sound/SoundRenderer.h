// Renders the sound of the transport ahead of the device.
#pragma once

#include "TarnwickCore/Performance/Transport.h"
#include "player/Sound/SampleRing.h"
#include "player/Sound/SoundClock.h"
#include "player/Sound/TimedSound.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tarnwick::player {

// What is heard, as one record.
struct SoundRecord {
    std::shared_ptr<TimedSound> own;  // of the episode; null: silent
    std::shared_ptr<TimedSound> file; // a media file over the same time; null: silent
    Transport transport;

    // At other speeds nothing is heard. In between, the pitch follows the speed, as on a tape.
    static constexpr double fastestHeard = 4;
    bool isHeard() const;

    bool operator==(const SoundRecord&) const = default;
};

// Fills the ring. A frame has the time of the transport at the moment when it is heard. Where the
// time jumps (a seek, the end of a loop) or the sound changes (a program, a slider), the old sound
// is faded out and the new one in. One thread.
class SoundRenderer {
  public:
    // `host` is the host's clock, which measures how long rendering takes.
    SoundRenderer(SampleRing& ring, const SoundClock& clock, std::function<double()> host);

    void show(SoundRecord record);
    const SoundRecord& record() const { return record_; }

    // Renders one part. False if enough is ahead.
    bool step();

    // The number of the first frame after the last jump of the time that is not the end of a loop.
    // Any thread.
    std::int64_t lastJump() const { return lastJump_; }

    static constexpr std::int64_t fade = soundRate / 100; // frames

  private:
    // The place in the episode from which the next frame is rendered.
    struct Playhead {
        double time = 0; // seconds of the episode
        double step = 0; // seconds of the episode in a frame; 0: silent

        Playhead after(std::int64_t frames) const;
    };

    Playhead playheadAt(std::int64_t number) const;
    bool continues(const Playhead& from, const Playhead& to) const;
    double drift() const;
    void correctDrift();
    bool jump();
    void extend();
    std::int64_t framesToWrap(const Playhead& playhead) const;
    Playhead wrapped(const Playhead& playhead) const;
    std::int64_t partLength(const Playhead& playhead) const;
    std::int64_t ahead() const;
    std::vector<SoundFrame> render(const Playhead& playhead, std::int64_t count);
    bool renderPair(TimedSound* sound, const Playhead& playhead, std::int64_t count,
                    std::array<float, 2> SoundFrame::*pair, std::vector<SoundFrame>& frames);

    SampleRing& ring_;
    const SoundClock& clock_;
    std::function<double()> host_;
    SoundRecord record_;
    Playhead playhead_;         // of the frame ring_.written()
    bool isChanged_ = true;     // the record, since the last jump
    bool isIncomplete_ = false; // a sound was not there yet
    double retry_ = 0;          // host seconds of the next try then
    bool isCorrecting_ = false; // the drift of the device
    double slowest_ = 0;        // seconds that rendering a part took, recently
    std::atomic<std::int64_t> lastJump_ = 0;
};

} // namespace tarnwick::player
