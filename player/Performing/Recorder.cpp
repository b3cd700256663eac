#include "player/Performing/Recorder.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {

Recorder::Recorder(Performance::EpisodeMark episode, const PerformedState& state, double host)
    : begin_(host), last_(relative(state)) {
    performance_.episode = std::move(episode);
    performance_.start = state;
    // Counted from the beginning of the performance, not from when it began to play.
    performance_.start.transport = state.transport.withSpeed(state.transport.speed, host);
    performance_.start = relative(performance_.start);
}

PerformedState Recorder::relative(PerformedState state) const {
    state.transport.since -= begin_;
    return state;
}

double Recorder::seconds(double host) const {
    return std::clamp(host - begin_, performance_.length, Performance::longest);
}

void Recorder::hear(const PerformedState& state, double host) {
    take(relative(state), host);
}

void Recorder::hearLevels(const HeardLevels& heard, double host) {
    if (!last_.transport.isPlaying)
        return;
    PerformedState next = last_;
    next.heard = heard;
    take(next, host);
}

void Recorder::take(const PerformedState& next, double host) {
    if (isFull(host))
        return;
    const double time = seconds(host);
    for (Performance::What& what : changesBetween(last_, next)) {
        performance_.changes.push_back({time, std::move(what)});
        performance_.length = time;
    }
    last_ = next;
}

void Recorder::remark(const std::string& sentence) {
    if (std::ranges::find(performance_.remarks, sentence) == performance_.remarks.end())
        performance_.remarks.push_back(sentence);
}

void Recorder::end(double host) {
    performance_.length = seconds(host);
}

} // namespace tarnwick::player
