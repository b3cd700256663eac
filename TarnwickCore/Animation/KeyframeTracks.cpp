#include "TarnwickCore/Animation/KeyframeTracks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnwick {
namespace {

using Key = KeyframeTracks::Key;
using Ease = KeyframeTracks::Ease;

constexpr std::array<std::string_view, 3> easeNames{"linear", "smooth", "hold"};

auto isAt(double time) {
    return [time](const Key& key) { return std::abs(key.time - time) < KeyframeTracks::snap; };
}

float weight(Ease ease, float u) {
    switch (ease) {
    case Ease::linear:
        return u;
    case Ease::smooth:
        return u * u * (3 - 2 * u);
    case Ease::hold:
        return 0;
    }
    return u;
}

// `keys` has at least one.
float valueAt(std::span<const Key> keys, double time) {
    if (time <= keys.front().time)
        return keys.front().value;
    if (time >= keys.back().time)
        return keys.back().value;
    std::size_t low = 0;
    std::size_t high = keys.size() - 1;
    while (high - low > 1) {
        const std::size_t middle = (low + high) / 2;
        (keys[middle].time <= time ? low : high) = middle;
    }
    const Key& from = keys[low];
    const Key& to = keys[high];
    const double span = to.time - from.time;
    if (!(span > 0))
        return to.value;
    const auto u = static_cast<float>((time - from.time) / span);
    return from.value + (to.value - from.value) * weight(from.ease, u);
}

} // namespace

std::string_view rawValue(Ease ease) {
    return easeNames[static_cast<std::size_t>(ease)];
}

std::optional<Ease> easeOf(std::string_view rawValue) {
    for (const Ease ease : KeyframeTracks::allEases)
        if (tarnwick::rawValue(ease) == rawValue)
            return ease;
    return std::nullopt;
}

std::span<const Key> KeyframeTracks::keys(std::string_view name) const {
    const auto track = tracks.find(name);
    return track == tracks.end() ? std::span<const Key>{} : std::span<const Key>(track->second);
}

void KeyframeTracks::set(std::string_view name, double time, float value,
                         std::optional<Ease> ease) {
    const double clamped = time >= 0 ? time : 0;
    std::vector<Key>& track = tracks[std::string(name)];
    const auto match = std::find_if(track.begin(), track.end(), isAt(clamped));
    if (match != track.end()) {
        match->value = value;
        match->ease = ease.value_or(match->ease);
        return;
    }
    track.push_back({.time = clamped, .value = value, .ease = ease.value_or(Ease::smooth)});
    std::stable_sort(track.begin(), track.end(),
                     [](const Key& a, const Key& b) { return a.time < b.time; });
}

void KeyframeTracks::setEase(std::string_view name, double time, Ease ease) {
    const auto track = tracks.find(name);
    if (track == tracks.end())
        return;
    const auto match = std::find_if(track->second.begin(), track->second.end(), isAt(time));
    if (match != track->second.end())
        match->ease = ease;
}

void KeyframeTracks::remove(std::string_view name, double time) {
    const auto track = tracks.find(name);
    if (track == tracks.end())
        return;
    std::erase_if(track->second, isAt(time));
    if (track->second.empty())
        tracks.erase(track);
}

void KeyframeTracks::clear(std::string_view name) {
    if (const auto track = tracks.find(name); track != tracks.end())
        tracks.erase(track);
}

bool KeyframeTracks::isEmpty() const {
    return std::all_of(tracks.begin(), tracks.end(),
                       [](const auto& track) { return track.second.empty(); });
}

double KeyframeTracks::lastTime() const {
    std::optional<double> last;
    for (const auto& [name, keys] : tracks)
        if (!keys.empty())
            last = std::max(last.value_or(keys.back().time), keys.back().time);
    return last.value_or(0);
}

std::optional<float> KeyframeTracks::value(std::string_view name, double time) const {
    const std::span<const Key> track = keys(name);
    return track.empty() ? std::nullopt : std::optional(valueAt(track, time));
}

ParamValues KeyframeTracks::values(double time, ParamValues base) const {
    for (const auto& [name, keys] : tracks)
        if (!keys.empty())
            base[name] = valueAt(keys, time);
    return base;
}

KeyframeTracks KeyframeTracks::fitted(std::span<const ParamDecl> params) const {
    KeyframeTracks fitted;
    for (const ParamDecl& param : params) {
        const std::span<const Key> track = keys(param.name);
        if (track.empty())
            continue;
        std::vector<Key> clamped(track.begin(), track.end());
        for (Key& key : clamped) {
            const float raised = key.value <= param.min ? param.min : key.value;
            key.value = param.max < raised ? param.max : raised;
        }
        fitted.tracks[param.name] = std::move(clamped);
    }
    return fitted;
}

} // namespace tarnwick
