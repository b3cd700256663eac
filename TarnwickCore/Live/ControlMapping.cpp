#include "TarnwickCore/Live/ControlMapping.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

float clamped(float value, const ParamDecl& param) {
    return std::clamp(value, param.min, param.max);
}

} // namespace

// At 1 the sum may round to the float next to max.
float ControlMapping::valueAt(float place, const ParamDecl& param) {
    if (place <= 0)
        return param.min;
    // The difference of finite ends may be infinite.
    const float distance = param.max - param.min;
    const float value = std::isfinite(distance) ? param.min + place * distance
                                                : std::lerp(param.min, param.max, place);
    return std::isnan(value) ? param.defaultValue : clamped(value, param);
}

std::optional<ControlMapping::NamedValue> ControlMapping::value(const OSC::Message& message,
                                                                std::span<const ParamDecl> params) {
    std::string_view name = message.address;
    if (!name.starts_with(oscPrefix) || message.numbers.empty() ||
        !std::isfinite(message.numbers[0]))
        return std::nullopt;
    name.remove_prefix(oscPrefix.size());
    static constexpr std::string_view ownUnits = "/value";
    const bool isValue = name.ends_with(ownUnits);
    if (isValue)
        name.remove_suffix(ownUnits.size());
    const auto param = std::find_if(params.begin(), params.end(),
                                    [&](const ParamDecl& one) { return one.name == name; });
    if (param == params.end())
        return std::nullopt;
    const float number = message.numbers[0];
    return NamedValue{param->name,
                      isValue ? clamped(number, *param) : valueAt(std::min(number, 1.0f), *param)};
}

float ControlMapping::value(std::uint8_t cc, const ParamDecl& param) {
    return cc >= 127 ? param.max : valueAt(static_cast<float>(cc) / 127, param);
}

std::optional<ControlMapping::ControlChange> ControlMapping::controlChange(std::uint32_t ump) {
    if (ump >> 28 != 2 || (ump >> 20 & 0xF) != 0xB)
        return std::nullopt;
    return ControlChange{.channel = static_cast<std::uint8_t>(ump >> 16 & 0xF),
                         .controller = static_cast<std::uint8_t>(ump >> 8 & 0x7F),
                         .value = static_cast<std::uint8_t>(ump & 0x7F)};
}

} // namespace tarnwick
