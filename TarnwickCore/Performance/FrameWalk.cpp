#include "TarnwickCore/Performance/FrameWalk.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

FrameWalk::FrameWalk(std::shared_ptr<const Performance> performance)
    : performance_(std::move(performance)) {
    precondition(performance_ != nullptr, "a walk has a performance");
}

FrameControls FrameWalk::controls() {
    if (!controls_)
        controls_ = {std::make_shared<const Settings>(state_.settings), state_.pointer};
    return *controls_;
}

std::vector<FramePassage> FrameWalk::advance(double seconds) {
    if (!at_ || seconds < *at_)
        begin();
    at_ = seconds;
    const auto& changes = performance_->changes;
    while (made_ < changes.size() && changes[made_].time <= seconds) {
        play(changes[made_].time);
        makeChanges();
    }
    play(seconds);
    return std::exchange(passages_, {});
}

void FrameWalk::begin() {
    state_ = performance_->start;
    controls_.reset();
    made_ = 0;
    lap_ = state_.transport.lapAt(0);
    go(Transport::frameOf(state_.transport.timeAt(0)), Way::start, controls());
}

// Nothing changes up to `seconds`, so the moments of the passages in between do not matter.
void FrameWalk::play(double seconds) {
    const Transport& transport = state_.transport;
    const std::int64_t lap = transport.lapAt(seconds);
    const std::int64_t to = Transport::frameOf(transport.timeAt(seconds));
    if (std::exchange(lap_, lap) != lap)
        go(transport.speed > 0 ? Transport::frameOf(transport.loop->start) : to, Way::start,
           controls());
    if (to != frame_)
        go(to, Way::playing, controls());
}

// The changes of one moment are one: a slider and a seek that were published together.
void FrameWalk::makeChanges() {
    const auto& changes = performance_->changes;
    const double time = changes[made_].time;
    const auto first = changes.begin() + static_cast<std::ptrdiff_t>(made_);
    const auto end = std::find_if(first, changes.end(),
                                  [time](const auto& change) { return change.time != time; });
    const bool mayJump = std::any_of(first, end, [](const Performance::Change& change) {
        return std::holds_alternative<Transport>(change.what);
    });
    const std::optional<FrameControls> before = mayJump ? std::optional(controls()) : std::nullopt;
    for (auto change = first; change != end; ++change) {
        apply(change->what, state_);
        if (!std::holds_alternative<Transport>(change->what))
            controls_.reset();
    }
    made_ += static_cast<std::size_t>(end - first);
    if (!before)
        return;
    lap_ = state_.transport.lapAt(time);
    go(Transport::frameOf(state_.transport.timeAt(time)), Way::jump, *before);
}

void FrameWalk::go(std::int64_t to, Way way, const FrameControls& left) {
    const bool startsAgain = way == Way::start || to < frame_;
    if (!startsAgain && to == frame_)
        return;
    if (startsAgain)
        passages_.clear();
    FramePassage& passage = passages_.emplace_back();
    passage.to = to;
    passage.isJump = startsAgain || way == Way::jump;
    passage.reached = controls();
    if (!startsAgain) {
        passage.from = frame_;
        passage.left = left;
    }
    frame_ = to;
}

} // namespace tarnwick
