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

std::optional<PerformedFile> fileOf(const PerformedInputs& inputs, const std::string& name) {
    const auto found = inputs.find(name);
    return found == inputs.end() ? std::nullopt : std::optional(found->second);
}

const ParamDecl* declarationOf(const std::string& name, std::span<const ParamDecl> params) {
    const auto found = std::ranges::find(params, name, &ParamDecl::name);
    return found == params.end() ? nullptr : &*found;
}

// Absent: of a parameter that is not declared.
std::optional<Performance::What> fittedChange(const Performance::What& what,
                                              std::span<const ParamDecl> params) {
    if (const Value* value = std::get_if<Value>(&what)) {
        const ParamDecl* param = declarationOf(value->name, params);
        if (param == nullptr || !value->value)
            return param == nullptr ? std::nullopt : std::optional(what);
        return Value{value->name, std::clamp(*value->value, param->min, param->max)};
    }
    if (const Track* track = std::get_if<Track>(&what)) {
        KeyframeTracks tracks;
        tracks.tracks[track->name] = track->keys;
        if (declarationOf(track->name, params) == nullptr)
            return std::nullopt;
        return Track{track->name, tracks.fitted(params).tracks[track->name]};
    }
    return what;
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
    void operator()(const Performance::Input& change) const {
        if (change.file)
            state.inputs[change.name] = *change.file;
        else
            state.inputs.erase(change.name);
    }
    void operator()(const HeardLevels& change) const { state.heard = change; }
};

} // namespace

Performance::EpisodeMark Performance::markOf(std::string_view title, std::string_view text) {
    SHA256 digest;
    digest.update(text);
    return {.title = std::string(title), .sha256 = digest.finish()};
}

Performance Performance::fitted(std::span<const ParamDecl> params) const {
    Performance made{.episode = episode, .start = start, .length = length, .remarks = remarks};
    made.start.settings = start.settings.fitted(params);
    made.changes.reserve(changes.size());
    for (const Change& change : changes)
        if (auto what = fittedChange(change.what, params))
            made.changes.push_back({change.time, *std::move(what)});
    return made;
}

std::vector<std::string> Performance::misfits(std::span<const ParamDecl> params,
                                              std::string_view source) const {
    std::set<std::string> names;
    for (const Change& change : changes)
        if (const Value* value = std::get_if<Value>(&change.what))
            names.insert(value->name);
        else if (const Track* track = std::get_if<Track>(&change.what))
            names.insert(track->name);
    std::vector<std::string> sentences = start.settings.misfits(params, source);
    for (const std::string& name : names)
        if (declarationOf(name, params) == nullptr) {
            std::string sentence = undeclaredSentence(name, params, source);
            if (std::ranges::find(sentences, sentence) == sentences.end())
                sentences.push_back(std::move(sentence));
        }
    return sentences;
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
    if (from.inputs != to.inputs)
        for (const std::string& name : namesOf(from.inputs, to.inputs))
            if (fileOf(from.inputs, name) != fileOf(to.inputs, name))
                changes.emplace_back(Performance::Input{name, fileOf(to.inputs, name)});
    if (from.heard != to.heard)
        changes.emplace_back(to.heard);
    if (from.transport != to.transport)
        changes.emplace_back(to.transport);
    return changes;
}

} // namespace tarnwick
