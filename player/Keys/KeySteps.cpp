#include "player/Keys/KeySteps.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

using Key = KeyframeTracks::Key;
constexpr double snap = KeyframeTracks::snap;

// The key after or before a time; null without one.
const Key* next(std::span<const Key> keys, double time, Direction direction) {
    if (direction == Direction::forward) {
        const auto after = std::ranges::lower_bound(keys, time + snap, {}, &Key::time);
        return after == keys.end() ? nullptr : &*after;
    }
    const auto from = std::ranges::upper_bound(keys, time - snap, {}, &Key::time);
    return from == keys.begin() ? nullptr : &*std::prev(from);
}

} // namespace

std::optional<double> nextKeyTime(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                                  double time, Direction direction) {
    std::optional<double> nearest;
    for (const ParamDecl& param : params)
        if (const Key* key = next(tracks.keys(param.name), time, direction))
            if (!nearest || std::abs(key->time - time) < std::abs(*nearest - time))
                nearest = key->time;
    return nearest;
}

std::optional<KeyPlace> nextKey(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                                const std::optional<KeyPlace>& key, Direction direction) {
    const bool isForward = direction == Direction::forward;
    const auto count = static_cast<std::ptrdiff_t>(params.size());
    std::ptrdiff_t row = isForward ? 0 : count - 1;
    if (key) {
        row = std::ranges::find(params, key->name, &ParamDecl::name) - params.begin();
        if (row == count)
            return std::nullopt;
        if (const Key* found = next(tracks.keys(key->name), key->time, direction))
            return KeyPlace{key->name, found->time};
        row += isForward ? 1 : -1;
    }
    for (; row >= 0 && row < count; row += isForward ? 1 : -1) {
        const std::string& name = params[static_cast<std::size_t>(row)].name;
        if (const auto keys = tracks.keys(name); !keys.empty())
            return KeyPlace{name, isForward ? keys.front().time : keys.back().time};
    }
    return std::nullopt;
}

std::optional<KeyPlace> nearestKey(const KeyframeTracks& tracks, const ParamDecl& param,
                                   double time) {
    const auto keys = tracks.keys(param.name);
    if (keys.empty())
        return std::nullopt;
    const auto nearest = std::ranges::min_element(
        keys, {}, [&](const Key& key) { return std::abs(key.time - time); });
    return KeyPlace{param.name, nearest->time};
}

} // namespace tarnwick::player
