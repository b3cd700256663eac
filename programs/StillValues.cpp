#include "programs/StillValues.h"

#include "TarnwickCore/Numbers.h"
#include "programs/CommandError.h"
#include "programs/SourceFile.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

std::string namesOf(std::span<const ParamDecl> params) {
    std::string names;
    for (const ParamDecl& param : params)
        names += (names.empty() ? "" : ", ") + param.name;
    return names.empty() ? "none" : names;
}

} // namespace

ParamValues settingsOf(std::span<const std::string_view> settings,
                       std::span<const ParamDecl> params, std::string_view episodePath) {
    ParamValues values;
    for (const std::string_view setting : settings) {
        const std::size_t equals = setting.find('=');
        if (equals == std::string_view::npos)
            misuse("--set wants NAME=VALUE, not " + quoted(setting) + ".");
        const std::string_view name = setting.substr(0, equals);
        if (std::none_of(params.begin(), params.end(),
                         [&](const ParamDecl& param) { return param.name == name; }))
            misuse(std::string(episodePath) + " declares no parameter " + quoted(name) +
                   "; it declares " + namesOf(params) + ".");
        const std::optional<float> value = floatOf(setting.substr(equals + 1));
        if (!value || !std::isfinite(*value))
            misuse("The value of " + std::string(name) +
                   " is no number: " + quoted(setting.substr(equals + 1)) + ".");
        values[std::string(name)] = *value;
    }
    return values;
}

KeyframeTracks keysOf(std::string_view path, std::span<const ParamDecl> params) {
    try {
        return KeyframeTracks::decode(sourceText(path)).fitted(params);
    } catch (const KeyframeTracksError& error) {
        misuse(std::string(path) + " holds no keys: " + error.what());
    }
}

} // namespace tarnwick
