#include "saver/Settings.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace tarnwick {
namespace {

std::optional<ParamValues> decodeValues(const nlohmann::json& object) {
    if (!object.is_object())
        return std::nullopt;
    ParamValues values;
    for (const auto& [name, number] : object.items()) {
        if (!number.is_number())
            return std::nullopt;
        const double value = number.get<double>();
        if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max()))
            return std::nullopt;
        values[name] = static_cast<float>(value);
    }
    return values;
}

std::optional<KeyframeTracks> decodeKeys(const nlohmann::json& document) {
    try {
        return KeyframeTracks::decode(document);
    } catch (const KeyframeTracksError&) {
        return std::nullopt;
    }
}

} // namespace

std::optional<Settings> decodeSettings(std::string_view document) {
    const auto json = nlohmann::json::parse(document.begin(), document.end(), nullptr, false);
    if (!json.is_object() || !json.contains("name") || !json["name"].is_string() ||
        !json.contains("values") || !json.contains("keys"))
        return std::nullopt;
    std::optional<ParamValues> values = decodeValues(json["values"]);
    std::optional<KeyframeTracks> keys = decodeKeys(json["keys"]);
    if (!values || !keys)
        return std::nullopt;
    return Settings{json["name"].get<std::string>(), std::move(*values), std::move(*keys)};
}

} // namespace tarnwick
