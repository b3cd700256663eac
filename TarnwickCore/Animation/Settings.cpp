#include "TarnwickCore/Animation/Settings.h"

#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>

namespace tarnwick {
namespace {

float clamped(const ParamDecl& param, float value) {
    return std::clamp(value, param.min, param.max);
}

std::string rangeText(const ParamDecl& param) {
    return param.name + " goes from " + shortest(param.min) + " to " + shortest(param.max) + "; ";
}

// One sentence for each track, however many keys are outside; empty if none is.
std::string clampedSentence(const ParamDecl& param, std::span<const KeyframeTracks::Key> keys) {
    auto isOutside = [&](const auto& key) { return clamped(param, key.value) != key.value; };
    const auto first = std::ranges::find_if(keys, isOutside);
    if (first == keys.end())
        return "";
    const auto more = std::ranges::count_if(keys, isOutside) - 1;
    return rangeText(param) + "its key of " + shortest(first->value) + " at " +
           shortest(first->time) + " s counts as " + shortest(clamped(param, first->value)) +
           (more > 0 ? ", and " + std::to_string(more) + " more of its keys are clamped." : ".");
}

} // namespace

std::string undeclaredSentence(std::string_view name, std::span<const ParamDecl> params,
                               std::string_view episode) {
    std::string names;
    for (const ParamDecl& param : params)
        names += (names.empty() ? "" : ", ") + param.name;
    return std::string(episode) + " declares no parameter \"" + std::string(name) +
           "\"; it declares " + (names.empty() ? "none" : names) + ".";
}

std::string clampedSentence(const ParamDecl& param, float value) {
    if (clamped(param, value) == value)
        return "";
    return rangeText(param) + shortest(value) + " counts as " + shortest(clamped(param, value)) +
           ".";
}

Settings Settings::fitted(std::span<const ParamDecl> params) const {
    Settings fitted{.name = name, .keys = keys.fitted(params)};
    for (const ParamDecl& param : params)
        if (const auto value = values.find(param.name); value != values.end())
            fitted.values[param.name] = clamped(param, value->second);
    return fitted;
}

std::vector<std::string> Settings::misfits(std::span<const ParamDecl> params,
                                           std::string_view episode) const {
    std::vector<std::string> sentences;
    auto note = [&](std::string sentence) {
        if (!sentence.empty() && std::ranges::find(sentences, sentence) == sentences.end())
            sentences.push_back(std::move(sentence));
    };
    auto noteOf = [&](std::string_view name, const auto& given) {
        const auto param = std::ranges::find(params, name, &ParamDecl::name);
        note(param == params.end() ? undeclaredSentence(name, params, episode)
                                   : clampedSentence(*param, given));
    };
    for (const auto& [name, value] : values)
        noteOf(name, value);
    for (const auto& [name, track] : keys.tracks)
        noteOf(name, std::span(track));
    return sentences;
}

} // namespace tarnwick
