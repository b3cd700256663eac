// The sound of a timeline in pieces: stretches of samples in which nothing changes.
#pragma once

#include "TarnwickCore/Performance/PerformanceCursor.h"
#include "TarnwickCore/Performance/Timeline.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

struct SoundPiece {
    std::int64_t count = 0; // samples
    bool isSilent = false;  // the clock is paused; the rest of the record is unused then
    double start = 0;       // seconds of the episode, of the first sample
    double speed = 1;       // seconds of the episode per second
    ParamValues values{};   // base values
    std::string file{};     // that the episode hears; empty: none
    bool isFilePlayed = false;

    bool operator==(const SoundPiece&) const = default;
};

// The pieces of `count` samples from sample `first` on. Sample i is at i / `rate` seconds of the
// performance; it has the clock and the values of that time.
std::vector<SoundPiece> soundPieces(PerformanceCursor& cursor, std::int64_t first,
                                    std::int64_t count, std::int64_t rate);

// The pieces of any timeline. One thread at a time; fast forwards.
class TimelineSound {
  public:
    explicit TimelineSound(Timeline timeline);

    const Timeline& timeline() const { return timeline_; }
    // The pieces of `count` samples, at `rate`, from `start` seconds of the timeline on. Settings
    // are one piece, with their base values: keys do not change a sound. A performance begins at
    // its sample nearest to `start`.
    std::vector<SoundPiece> pieces(double start, std::int64_t count, std::int64_t rate);

  private:
    Timeline timeline_;
    std::optional<PerformanceCursor> cursor_; // of a performance
};

} // namespace tarnwick
