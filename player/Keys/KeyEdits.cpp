#include "player/Keys/KeyEdits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tarnwick::player {
namespace {

using Key = KeyframeTracks::Key;

constexpr double longestTime = 86'400; // seconds; a pasted or entered time is at most this

const ParamDecl* paramOf(std::span<const ParamDecl> params, std::string_view name) {
    const auto found = std::ranges::find(params, name, &ParamDecl::name);
    return found == params.end() ? nullptr : &*found;
}

float inRange(const ParamDecl& param, double value) {
    return static_cast<float>(
        std::clamp(value, static_cast<double>(param.min), static_cast<double>(param.max)));
}

double spanOf(const ParamDecl& param) {
    return static_cast<double>(param.max) - param.min;
}

void order(std::vector<Key>& keys) {
    std::ranges::stable_sort(keys, {}, &Key::time);
}

// Of keys at one time, the last remains.
std::vector<Key> distinct(std::vector<Key> keys) {
    std::vector<Key> left;
    order(keys);
    for (Key& key : keys)
        if (!left.empty() && isSameTime(left.back().time, key.time))
            left.back() = key;
        else
            left.push_back(key);
    return left;
}

// O((n + m) log(n + m)). The changed keys replace the others at their times.
std::vector<Key> merged(std::vector<Key> others, const std::vector<Key>& changed) {
    std::erase_if(others, [&](const Key& key) {
        const auto next =
            std::ranges::upper_bound(changed, key.time - KeyframeTracks::snap, {}, &Key::time);
        return next != changed.end() && isSameTime(next->time, key.time);
    });
    others.insert(others.end(), changed.begin(), changed.end());
    order(others);
    return others;
}

// Puts the changed keys of a parameter among its other keys.
void put(KeyEdit& edit, const std::string& name, std::vector<Key> others,
         std::vector<Key> changed) {
    changed = distinct(std::move(changed));
    for (const Key& key : changed)
        edit.selection.add({name, key.time});
    edit.tracks.tracks[name] = merged(std::move(others), changed);
}

KeyEdit changedBy(const KeyframeTracks& tracks, const KeySelection& selection, Originals originals,
                  const std::function<void(const std::string& name, Key& key)>& change) {
    KeyEdit edit{.tracks = tracks, .selection = {}};
    for (const auto& [name, times] : selection.times()) {
        std::vector<Key> others, changed;
        for (const Key& key : tracks.keys(name)) {
            const bool isSelected = selection.contains(name, key.time);
            if (!isSelected || originals == Originals::kept)
                others.push_back(key);
            if (!isSelected)
                continue;
            changed.push_back(key);
            change(name, changed.back());
            changed.back().time = std::max(changed.back().time, 0.0);
        }
        if (!changed.empty())
            put(edit, name, std::move(others), std::move(changed));
    }
    return edit;
}

// The value at the same position in another range.
float carried(float value, const ParamDecl* from, const ParamDecl& to) {
    if (from == nullptr || from == &to)
        return inRange(to, value);
    return inRange(to, to.min + (value - from->min) / spanOf(*from) * spanOf(to));
}

} // namespace

KeyMove clamped(KeyMove move, const KeySelection& selection) {
    if (const auto span = selection.span())
        move.seconds = std::clamp(move.seconds, -span->from, longestTime);
    return move;
}

KeyEdit moved(const KeyframeTracks& tracks, const KeySelection& selection,
              std::span<const ParamDecl> params, const KeyMove& move, Originals originals) {
    const KeyMove within = clamped(move, selection);
    return changedBy(tracks, selection, originals, [&](const std::string& name, Key& key) {
        key.time += within.seconds;
        const ParamDecl* param = paramOf(params, name);
        if (param != nullptr && within.share != 0)
            key.value = inRange(*param, key.value + within.share * spanOf(*param));
    });
}

KeyEdit scaled(const KeyframeTracks& tracks, const KeySelection& selection, double fixed,
               double factor) {
    return changedBy(tracks, selection, Originals::moved, [&](const std::string&, Key& key) {
        key.time = fixed + (key.time - fixed) * factor;
    });
}

KeyEdit startingAt(const KeyframeTracks& tracks, const KeySelection& selection,
                   std::span<const ParamDecl> params, double time) {
    const auto span = selection.span();
    return moved(tracks, selection, params, {.seconds = span ? time - span->from : 0});
}

KeyframeTracks withValue(KeyframeTracks tracks, const KeySelection& selection,
                         std::span<const ParamDecl> params, float value) {
    for (const ParamDecl& param : params)
        if (const auto track = tracks.tracks.find(param.name); track != tracks.tracks.end())
            for (Key& key : track->second)
                if (selection.contains(param.name, key.time))
                    key.value = inRange(param, value);
    return tracks;
}

KeyframeTracks withEase(KeyframeTracks tracks, const KeySelection& selection,
                        KeyframeTracks::Ease ease) {
    for (auto& [name, keys] : tracks.tracks)
        for (Key& key : keys)
            if (selection.contains(name, key.time))
                key.ease = ease;
    return tracks;
}

KeyframeTracks without(KeyframeTracks tracks, const KeySelection& selection) {
    for (auto& [name, keys] : tracks.tracks)
        std::erase_if(keys, [&](const Key& key) { return selection.contains(name, key.time); });
    std::erase_if(tracks.tracks, [](const auto& track) { return track.second.empty(); });
    return tracks;
}

CopiedKeys copied(const KeyframeTracks& tracks, const KeySelection& selection) {
    CopiedKeys copy;
    const auto span = selection.span();
    for (const auto& [name, times] : selection.times())
        for (Key key : tracks.keys(name))
            if (selection.contains(name, key.time)) {
                key.time -= span->from;
                copy.tracks[name].push_back(key);
            }
    return copy;
}

KeyEdit pasted(const KeyframeTracks& tracks, const CopiedKeys& copied,
               std::span<const ParamDecl> params, double time, const ParamDecl* target) {
    KeyEdit edit{.tracks = tracks, .selection = {}};
    for (const auto& [name, keys] : copied.tracks) {
        const ParamDecl* from = paramOf(params, name);
        const ParamDecl* to = copied.tracks.size() == 1 && target != nullptr ? target : from;
        if (to == nullptr || keys.empty())
            continue;
        std::vector<Key> changed = keys;
        for (Key& key : changed)
            key = {.time = std::clamp(time + key.time, 0.0, longestTime),
                   .value = carried(key.value, from, *to),
                   .ease = key.ease};
        const auto others = tracks.keys(to->name);
        put(edit, to->name, {others.begin(), others.end()}, std::move(changed));
    }
    return edit;
}

} // namespace tarnwick::player
