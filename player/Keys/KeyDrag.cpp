#include "player/Keys/KeyDrag.h"

#include "TarnwickCore/Performance/Transport.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {

KeyDrag::KeyDrag(KeyframeTracks tracks, std::vector<ParamDecl> params, KeySelection selection,
                 std::vector<double> others)
    : tracks_(std::move(tracks)), params_(std::move(params)), selection_(std::move(selection)),
      targets_(SnapTargets::of(tracks_, params_, selection_, std::move(others))) {}

Snapped KeyDrag::placed(double time, Snap snap, double reach) const {
    return snap == Snap::on ? snapped(time, targets_, reach) : Snapped{time, {}};
}

KeyDrag::Result KeyDrag::moved(double grabbed, const KeyMove& move, Originals originals, Snap snap,
                               double reach) const {
    KeyMove wanted = move;
    std::optional<double> guide;
    if (move.seconds != 0) {
        const Snapped at = placed(grabbed + move.seconds, snap, reach);
        wanted.seconds = at.time - grabbed;
        guide = at.target;
    }
    const KeyMove done = clamped(wanted, selection_);
    return {.edit = player::moved(tracks_, selection_, params_, done, originals),
            .seconds = done.seconds,
            .guide = guide};
}

KeyDrag::Result KeyDrag::scaled(double end, double fixed, double time, Snap snap,
                                double reach) const {
    constexpr double frame = 1.0 / Transport::framesPerSecond;
    const Snapped at = placed(std::max(time, 0.0), snap, reach);
    const double length = end - fixed;
    const double factor = std::max((at.time - fixed) / length, frame / std::abs(length));
    return {.edit = player::scaled(tracks_, selection_, fixed, factor),
            .seconds = length * (factor - 1),
            .guide = at.target};
}

} // namespace tarnwick::player
