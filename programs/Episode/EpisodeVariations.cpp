#include "programs/Episode/EpisodeVariations.h"

#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeSettings.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::int64_t mostValues = 1 << 20; // of all variations together; about 100 MB

// The option's seconds; default: those of `key` in the episode's header.
double secondsOf(const Arguments& arguments, std::string_view option, double header,
                 std::string_view key, std::string_view path) {
    if (arguments.has(option))
        return arguments.numberOf(option);
    if (!accept(secondsUpToADay, shortest(header)))
        misuse("The " + std::string(key) + " of " + std::string(path) + " must be " +
               described(secondsUpToADay) + ", not " + shortest(header) + "; " +
               std::string(option) + " replaces it.");
    return header;
}

// The index of the first of `count` variations.
std::int64_t firstOf(const Arguments& arguments, std::int64_t count) {
    const std::int64_t first = arguments.integerOf("--from");
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    if (first > last - (count - 1))
        misuse("--from must be at most " + std::to_string(last - (count - 1)) + " for " +
               std::to_string(count) + " variations, not " + std::to_string(first) + ".");
    return first;
}

std::vector<std::int64_t> indicesOf(const Arguments& arguments, const EpisodeMeta& meta,
                                    std::string_view path, std::int64_t most) {
    const auto given = arguments.value("--count");
    if (!given && (arguments.has("--from") || meta.variations.empty()))
        misuse("--count N is required" + (meta.variations.empty()
                                              ? ": " + std::string(path) + " has no @variations."
                                              : " with --from."));
    if (!given) {
        if (std::cmp_greater(meta.variations.size(), most))
            misuse(std::string(path) + " lists " + std::to_string(meta.variations.size()) +
                   " variations; at most " + std::to_string(most) + " are drawn at a time.");
        return meta.variations;
    }
    requireValue("--count", WholeNumber{.least = 1, .most = static_cast<std::uint64_t>(most)},
                 *given);
    const std::int64_t count = integerOf(*given).value();
    std::vector<std::int64_t> indices(static_cast<std::size_t>(count));
    std::iota(indices.begin(), indices.end(), firstOf(arguments, count));
    return indices;
}

} // namespace

Settings EpisodeVariations::settingsOf(const Variation& variation) const {
    Settings varied = settings;
    for (const auto& [name, value] : variation.values)
        varied.values[name] = value;
    return varied;
}

EpisodeVariations episodeVariationsOf(const Arguments& arguments) {
    const std::string_view path = arguments.operand();
    EpisodeVariations variations{.seed = arguments.unsignedOf("--seed")};
    variations.episode = episodeAt(path);
    const EpisodeMeta& meta = variations.episode.meta;
    variations.length = secondsOf(arguments, "--length", meta.length, "@length", path);
    variations.duration =
        secondsOf(arguments, "--duration", meta.variationLength, "@variation", path);
    variations.spread = floatOf(arguments.textOf("--spread")).value();
    variations.settings = episodeSettingsOf(arguments, variations.episode);
    const std::vector<ParamDecl> params =
        variedParams(variations.episode.params(), variations.settings);
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
