// Turns the states that the player publishes into a performance.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <string>

namespace tarnwick::player {

// Times are seconds of the host clock; so are those of the transports that it hears. One thread at
// a time.
class Recorder {
  public:
    // The performance begins at `host` with that state.
    Recorder(Performance::EpisodeMark episode, const PerformedState& state, double host);

    // The state from `host` on, not before the last one. Only what differs is kept. Ignored after
    // Performance::longest seconds.
    void hear(const PerformedState& state, double host);
    // Levels that were shown from `host` on, not before the last state. Only while its clock plays:
    // a paused picture does not follow levels.
    void hearLevels(const HeardLevels& heard, double host);
    // Keeps a sentence once.
    void remark(const std::string& sentence);

    double seconds(double host) const; // since the beginning, at most Performance::longest
    bool isFull(double host) const { return seconds(host) >= Performance::longest; }

    // Up to the last change.
    const Performance& performance() const { return performance_; }
    // The performance is as long as to `host`.
    void end(double host);

  private:
    void take(const PerformedState& next, double host);
    PerformedState relative(PerformedState state) const;

    double begin_;
    PerformedState last_; // with a transport of the performance's clock
    Performance performance_;
};

} // namespace tarnwick::player
