#include "player/Keys/KeySelection.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick::player {
namespace {

constexpr double snap = KeyframeTracks::snap;

// The first of ascending `times` that is the same as `time` or after it.
auto placeOf(auto& times, double time) {
    return std::upper_bound(times.begin(), times.end(), time - snap);
}

} // namespace

bool isSameTime(double a, double b) {
    return std::abs(a - b) < snap;
}

const KeyframeTracks::Key* keyAt(const KeyframeTracks& tracks, std::string_view name, double time) {
    const auto keys = tracks.keys(name);
    const auto place = std::upper_bound(
        keys.begin(), keys.end(), time - snap,
        [](double wanted, const KeyframeTracks::Key& key) { return wanted < key.time; });
    return place != keys.end() && isSameTime(place->time, time) ? &*place : nullptr;
}

bool KeySelection::contains(std::string_view name, double time) const {
    const auto track = times_.find(name);
    if (track == times_.end())
        return false;
    const auto place = placeOf(track->second, time);
    return place != track->second.end() && isSameTime(*place, time);
}

void KeySelection::add(const KeyPlace& key) {
    std::vector<double>& times = times_[key.name];
    const auto place = placeOf(times, key.time);
    if (place == times.end() || !isSameTime(*place, key.time))
        times.insert(place, key.time);
}

void KeySelection::remove(const KeyPlace& key) {
    const auto track = times_.find(key.name);
    if (track == times_.end())
        return;
    std::erase_if(track->second, [&](double time) { return isSameTime(time, key.time); });
    if (track->second.empty())
        times_.erase(track);
}

void KeySelection::toggle(const KeyPlace& key) {
    contains(key.name, key.time) ? remove(key) : add(key);
}

void KeySelection::add(const KeySelection& other) {
    for (const auto& [name, times] : other.times_)
        for (const double time : times)
            add({name, time});
}

std::size_t KeySelection::count() const {
    std::size_t sum = 0;
    for (const auto& [name, times] : times_)
        sum += times.size();
    return sum;
}

std::optional<Range> KeySelection::span() const {
    std::optional<Range> span;
    for (const auto& [name, times] : times_)
        span = span ? Range{std::min(span->from, times.front()), std::max(span->to, times.back())}
                    : Range{times.front(), times.back()};
    return span;
}

std::optional<KeyframeTracks::Ease> commonEase(const KeyframeTracks& tracks,
                                               const KeySelection& selection) {
    std::optional<KeyframeTracks::Ease> common;
    for (const auto& [name, times] : selection.times())
        for (const double time : times)
            if (const KeyframeTracks::Key* key = keyAt(tracks, name, time)) {
                if (common && *common != key->ease)
                    return std::nullopt;
                common = key->ease;
            }
    return common;
}

KeySelection keysIn(const KeyframeTracks& tracks, std::span<const ParamDecl> params,
                    const Range& time) {
    KeySelection found;
    for (const ParamDecl& param : params)
        for (const KeyframeTracks::Key& key : tracks.keys(param.name))
            if (time.contains(key.time))
                found.add({param.name, key.time});
    return found;
}

KeySelection everyKey(const KeyframeTracks& tracks, std::span<const ParamDecl> params) {
    constexpr double longest = std::numeric_limits<double>::max();
    return keysIn(tracks, params, {-longest, longest});
}

KeySelection existing(const KeySelection& selection, const KeyframeTracks& tracks,
                      std::span<const ParamDecl> params) {
    KeySelection left;
    for (const ParamDecl& param : params)
        if (const auto track = selection.times().find(param.name); track != selection.times().end())
            for (const double time : track->second)
                if (const KeyframeTracks::Key* key = keyAt(tracks, param.name, time))
                    left.add({param.name, key->time});
    return left;
}

} // namespace tarnwick::player
