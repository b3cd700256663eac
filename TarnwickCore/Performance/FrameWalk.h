// The frames of 1/60 s of an episode in the order in which a performance comes to them, for what
// depends on the frames before: particles and pictures that read the previous one.
//
// The clock of the episode is at its nearest frame. It comes to further frames by playing and by
// jumps; where it goes back, by a seek or at the end of a loop, the frames are computed again from
// frame 0 on. A frame on the way has the controls of the moment at which the clock comes to it; the
// frame that the clock leaves, those of the moment at which it leaves.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// What a frame is drawn with, beside its time.
struct FrameControls {
    std::shared_ptr<const Settings> settings; // never null
    PointerPlace pointer{};
    std::shared_ptr<const PerformedInputs> inputs{}; // never null; another one after a change
    HeardLevels heard{};
};

// The clock goes from one frame to a later one, or starts again and goes to `to`.
struct FramePassage {
    std::optional<std::int64_t> from; // absent: starts again, with frame 0
    std::int64_t to = 0;
    bool isJump = false;   // by a change of the clock, or by starting again
    FrameControls left;    // of the frame `from`
    FrameControls reached; // of the frames after it up to `to`; the frame `to` is still there
};

// One thread at a time.
class FrameWalk {
  public:
    // `performance` is not null.
    explicit FrameWalk(std::shared_ptr<const Performance> performance);

    // The passages since the last call up to `seconds` of the performance. Those before a restart
    // are left out. Begins again if the last call was for a later time.
    std::vector<FramePassage> advance(double seconds);

    // At the time of the last call:
    const PerformedState& state() const { return state_; }
    const FrameControls& controls() const { return controls_; }

  private:
    void begin();
    void play(double seconds);
    void makeChanges();
    void showState(bool hasSettings, bool hasInputs);
    enum class Way : std::uint8_t { playing, jump, start };
    void go(std::int64_t to, Way way, const FrameControls& left);

    std::shared_ptr<const Performance> performance_;
    PerformedState state_;
    FrameControls controls_;   // of the state
    std::size_t made_ = 0;     // changes
    std::optional<double> at_; // seconds of the last call
    std::int64_t frame_ = 0, lap_ = 0;
    std::vector<FramePassage> passages_;
};

} // namespace tarnwick
