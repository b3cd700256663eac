#include "player/Keys/Snapping.h"

#include "TarnwickCore/Performance/Transport.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {

double onFrame(double time) {
    return static_cast<double>(Transport::frameOf(time)) / Transport::framesPerSecond;
}

SnapTargets SnapTargets::of(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                            const KeySelection& selection, std::vector<double> others) {
    SnapTargets targets{std::move(others)};
    for (const ParamDecl& param : params)
        for (const KeyframeTracks::Key& key : tracks.keys(param.name))
            if (!selection.contains(param.name, key.time))
                targets.times.push_back(key.time);
    std::ranges::sort(targets.times);
    return targets;
}

Snapped snapped(double time, const SnapTargets& targets, double reach) {
    const auto after = std::ranges::lower_bound(targets.times, time);
    std::optional<double> nearest;
    if (after != targets.times.end())
        nearest = *after;
    if (after != targets.times.begin())
        if (const double before = *std::prev(after); !nearest || time - before < *nearest - time)
            nearest = before;
    if (nearest && std::abs(*nearest - time) <= reach)
        return {*nearest, nearest};
    return {onFrame(time), {}};
}

} // namespace tarnwick::player
