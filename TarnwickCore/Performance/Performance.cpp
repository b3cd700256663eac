#include "TarnwickCore/Performance/Performance.h"

#include "TarnwickCore/Text/SHA256.h"

#include <algorithm>
#include <set>

namespace tarnwick {
namespace {

using Value = Performance::Value;
using Track = Performance::Track;
using Pointer = Performance::Pointer;

template <typename Map> std::set<std::string> namesOf(const Map& one, const Map& other) {
    std::set<std::string> names;
    for (const Map* map : {&one, &other})
        for (const auto& entry : *map)
            names.insert(entry.first);
    return names;
}

std::optional<float> valueOf(const ParamValues& values, const std::string& name) {
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

struct Applying {
    PerformedState& state;

    void operator()(const Value& change) const {
        if (change.value)
            state.settings.values[change.name] = *change.value;
        else
            state.settings.values.erase(change.name);
    }
    void operator()(const Track& change) const {
        if (change.keys.empty())
            state.settings.keys.clear(change.name);
        else
            state.settings.keys.tracks[change.name] = change.keys;
    }
    void operator()(const Pointer& change) const { state.pointer = change.place; }
    void operator()(const Transport& change) const { state.transport = change; }
};

} // namespace

Performance::EpisodeMark Performance::markOf(std::string_view title, std::string_view text) {
    SHA256 digest;
    digest.update(text);
    return {.title = std::string(title), .sha256 = digest.finish()};
}

void apply(const Performance::What& what, PerformedState& state) {
    std::visit(Applying{state}, what);
}

std::vector<Performance::What> changesBetween(const PerformedState& from,
                                              const PerformedState& to) {
    std::vector<Performance::What> changes;
    const ParamValues& before = from.settings.values;
    const ParamValues& after = to.settings.values;
    if (before != after)
        for (const std::string& name : namesOf(before, after))
            if (valueOf(before, name) != valueOf(after, name))
                changes.emplace_back(Value{name, valueOf(after, name)});
    const KeyframeTracks& keys = to.settings.keys;
    if (from.settings.keys != keys)
        for (const std::string& name : namesOf(from.settings.keys.tracks, keys.tracks))
            if (!std::ranges::equal(from.settings.keys.keys(name), keys.keys(name)))
                changes.emplace_back(Track{name, {keys.keys(name).begin(), keys.keys(name).end()}});
    if (from.pointer != to.pointer)
        changes.emplace_back(Pointer{to.pointer});
    if (from.transport != to.transport)
        changes.emplace_back(to.transport);
    return changes;
}

} // namespace tarnwick
