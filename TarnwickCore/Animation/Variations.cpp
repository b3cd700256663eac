// All draws are counter-based: no variation needs the ones before it. The output function is that
// of SplitMix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number generators", 2014).
#include "TarnwickCore/Animation/Variations.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace tarnwick {
namespace {

// Steps of the state. 64-bit numbers wrap around.
constexpr std::uint64_t golden = 0x9e3779b97f4a7c15; // between parameters, or seeds
constexpr std::uint64_t stride = 0xbf58476d1ce4e5b9; // between variations

// A number in [0, 1).
double unitNumber(std::uint64_t state) {
    std::uint64_t mixed = (state ^ (state >> 30)) * 0xbf58476d1ce4e5b9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
    mixed ^= mixed >> 31;
    return static_cast<double>(mixed >> 11) * 0x1p-53;
}

// The state for the first parameter of variation `index`.
std::uint64_t valueState(std::uint64_t seed, std::uint64_t index) {
    return 0x3c6ef372fe94f82a - (seed * 0x61c8864680b583eb + index * 0x40a7b892e31b1a47);
}

std::uint64_t startState(std::uint64_t seed, std::uint64_t index) {
    return seed * golden + golden + index * stride;
}

// Rounds in single precision, halves away from zero. NaN becomes the minimum.
float roundedInto(float value, const ParamDecl& param) {
    const float rounded = std::round(value * 100) / 100;
    return std::min(std::max(param.min, rounded), param.max);
}

float variedValue(const ParamDecl& param, double unit, float spread) {
    const float r = 2 * static_cast<float>(unit) - 1;
    const float room = r >= 0 ? param.max - param.defaultValue : param.defaultValue - param.min;
    const float value = param.defaultValue + spread * r * room;
    return roundedInto(std::isnan(value) ? param.defaultValue : value, param);
}

struct Change {
    const ParamDecl* param;
    float value;
    float size; // absolute; 0 if the default was only rounded
};

Change changeOf(const ParamDecl& param, float value) {
    const bool isDefault = value == roundedInto(param.defaultValue, param);
    return {&param, value, isDefault ? 0 : std::abs(value - param.defaultValue)};
}

std::string highlightsOf(std::vector<Change>& changes) {
    constexpr std::size_t most = 2;
    constexpr float noticeable = 0.02F;
    std::erase_if(changes, [](const Change& change) { return !(change.size > noticeable); });
    std::ranges::stable_sort(changes, std::ranges::greater{}, &Change::size);
    std::string text;
    for (const Change& change : std::span(changes).first(std::min(changes.size(), most)))
        text += (text.empty() ? "" : ", ") + settingText(change.param->name, change.value);
    return text;
}

// The range of start times within the episode, in seconds.
double startRoom(double length, double duration) {
    const double room = length - duration;
    return room > 0 && std::isfinite(2 * room) ? room : 0;
}

} // namespace

std::vector<Variation> Variations::make(std::span<const ParamDecl> params, std::uint64_t seed,
                                        std::int64_t from, std::int64_t count, double length,
                                        double duration, float spread) {
    const float clampedSpread = spread > 0 ? std::min(spread, 1.0F) : 0;
    const double room = startRoom(length, duration);
    std::vector<Variation> series;
    series.reserve(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    for (std::int64_t k = 0; k < count; ++k) {
        const auto index = static_cast<std::uint64_t>(from) + static_cast<std::uint64_t>(k);
        Variation& variation =
            series.emplace_back(Variation{.index = static_cast<std::int64_t>(index)});
        std::vector<Change> changes;
        std::uint64_t state = valueState(seed, index);
        for (const ParamDecl& param : params) {
            if (std::ranges::find(fixed, param.name) != fixed.end())
                continue;
            const float value = variedValue(param, unitNumber(state), clampedSpread);
            state += golden;
            variation.values[param.name] = value;
            changes.push_back(changeOf(param, value));
        }
        variation.highlights = highlightsOf(changes);
        variation.start = std::round(2 * room * unitNumber(startState(seed, index))) * 0.5;
    }
    return series;
}

std::string settingText(std::string_view name, float value) {
    std::array<char, 64> digits{}; // the greatest float has 39 before the point
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                          std::chars_format::fixed, 2)
                                .ptr;
    std::string number(static_cast<const char*>(digits.data()), end);
    if (number.find('.') != std::string::npos) {
        number.erase(number.find_last_not_of('0') + 1);
        if (number.ends_with('.'))
            number.pop_back();
    }
    return std::string(name) + " " + number;
}

std::vector<ParamDecl> variedParams(std::span<const ParamDecl> params, const Settings& settings) {
    std::vector<ParamDecl> varied(params.begin(), params.end());
    std::erase_if(varied,
                  [&](const ParamDecl& param) { return !settings.keys.keys(param.name).empty(); });
    for (ParamDecl& param : varied)
        if (const auto value = settings.values.find(param.name); value != settings.values.end())
            param.defaultValue = value->second;
    return varied;
}

} // namespace tarnwick
