#include "programs/Episode/EpisodeVariations.h"

#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeSettings.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace tarnwick {
namespace {

constexpr double longest = 86400;            // seconds of an episode or a variation: a day
constexpr float usualSpread = 0.5F;          // half the way to the ends of a range
constexpr std::int64_t mostValues = 1 << 20; // of all variations together; some 100 MB

// What an option says in seconds, or without it the episode's header under `key`.
double secondsOf(const Arguments& arguments, std::string_view option, double header,
                 std::string_view key, std::string_view path) {
    const auto given = arguments.value(option);
    const std::optional<double> seconds = given ? doubleOf(*given) : header;
    if (seconds && *seconds > 0 && *seconds <= longest)
        return *seconds;
    const std::string wanted = " wants a number of seconds above 0 and up to " + shortest(longest);
    if (given)
        misuse(std::string(option) + wanted + ", not " + quoted(*given) + ".");
    misuse("The " + std::string(key) + " of " + std::string(path) + wanted + ", not " +
           shortest(header) + "; " + std::string(option) + " gives another.");
}

std::uint64_t seedOf(const Arguments& arguments) {
    const auto given = arguments.value("--seed");
    if (!given)
        misuse("--seed N is missing: the number that the series is drawn from.");
    const std::optional<std::uint64_t> seed = unsignedIntegerOf(*given);
    if (!seed)
        misuse("--seed wants a whole number from 0 to 18446744073709551615, not " + quoted(*given) +
               ".");
    return *seed;
}

float spreadOf(const Arguments& arguments) {
    const auto given = arguments.value("--spread");
    const std::optional<float> spread = given ? floatOf(*given) : usualSpread;
    if (!spread || !(*spread >= 0) || !(*spread <= 1))
        misuse("--spread wants a number from 0 to 1, not " + quoted(*given) + ".");
    return *spread;
}

// The index of the first variation, where as many as `count` follow.
std::int64_t firstOf(const Arguments& arguments, std::int64_t count) {
    const auto given = arguments.value("--from");
    const std::optional<std::int64_t> first = given ? signedIntegerOf(*given) : 1;
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    if (!first || *first > last - (count - 1))
        misuse("--from wants a whole number, and " + std::to_string(count) +
               " variations from there on up to " + std::to_string(last) + ", not " +
               quoted(*given) + ".");
    return *first;
}

std::vector<std::int64_t> indicesOf(const Arguments& arguments, const EpisodeMeta& meta,
                                    std::string_view path, std::int64_t most) {
    const auto given = arguments.value("--count");
    if (!given && (arguments.has("--from") || meta.variations.empty()))
        misuse("--count N is missing: how many variations" +
               (meta.variations.empty() ? "; " + std::string(path) + " lists none itself." : "."));
    if (!given) {
        if (std::cmp_greater(meta.variations.size(), most))
            misuse(std::string(path) + " lists " + std::to_string(meta.variations.size()) +
                   " variations; " + std::to_string(most) + " of it can be drawn at a time.");
        return meta.variations;
    }
    const std::optional<std::int64_t> count = integerOf(*given);
    if (!count || *count < 1 || *count > most)
        misuse("--count wants a whole number from 1 to " + std::to_string(most) + ", not " +
               quoted(*given) + ".");
    std::vector<std::int64_t> indices(static_cast<std::size_t>(*count));
    std::iota(indices.begin(), indices.end(), firstOf(arguments, *count));
    return indices;
}

// The declarations, with the settings' values for defaults.
std::vector<ParamDecl> variedParams(const Episode& episode, const Settings& settings) {
    std::vector<ParamDecl> params = episode.params();
    std::erase_if(params,
                  [&](const ParamDecl& param) { return !settings.keys.keys(param.name).empty(); });
    for (ParamDecl& param : params)
        if (const auto value = settings.values.find(param.name); value != settings.values.end())
            param.defaultValue = value->second;
    return params;
}

} // namespace

Settings EpisodeVariations::settingsOf(const Variation& variation) const {
    Settings varied = settings;
    for (const auto& [name, value] : variation.values)
        varied.values[name] = value;
    return varied;
}

EpisodeVariations episodeVariationsOf(const Arguments& arguments) {
    const std::string_view path = arguments.operand("episode");
    EpisodeVariations variations{.seed = seedOf(arguments)};
    variations.episode = episodeAt(path);
    const EpisodeMeta& meta = variations.episode.meta;
    variations.length = secondsOf(arguments, "--length", meta.length, "@length", path);
    variations.duration =
        secondsOf(arguments, "--duration", meta.variationLength, "@variation", path);
    variations.spread = spreadOf(arguments);
    variations.settings = episodeSettingsOf(arguments, variations.episode);
    const std::vector<ParamDecl> params = variedParams(variations.episode, variations.settings);
    const auto names = static_cast<std::int64_t>(params.size());
    const std::int64_t most =
        std::max<std::int64_t>(1, mostValues / std::max<std::int64_t>(1, names));
    for (const std::int64_t index : indicesOf(arguments, meta, path, most))
        for (Variation& one : Variations::make(params, variations.seed, index, 1, variations.length,
                                               variations.duration, variations.spread))
            variations.series.push_back(std::move(one));
    return variations;
}

} // namespace tarnwick
