#include "TarnwickCore/EpisodeMeta.h"

#include "TarnwickCore/Characters.h"
#include "TarnwickCore/Lines.h"
#include "TarnwickCore/Numbers.h"
#include "TarnwickCore/Pattern.h"

#include <array>
#include <utility>

namespace tarnwick {
namespace {

// `text` up to the first `mark`, and what follows it; the second is absent without a mark.
std::pair<std::string_view, std::optional<std::string_view>> halves(std::string_view text,
                                                                    char mark) {
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos)
        return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

void readEpisode(EpisodeMeta& meta, std::string_view value) {
    const auto [number, title] = halves(value, ' ');
    const std::optional<std::int64_t> read = signedIntegerOf(number);
    if (!read)
        return;
    meta.number = *read;
    if (title)
        meta.title = *title;
}

void readLength(EpisodeMeta& meta, std::string_view value) {
    if (const auto seconds = doubleOf(value); seconds && *seconds > 0)
        meta.length = *seconds;
}

void readVariation(EpisodeMeta& meta, std::string_view value) {
    if (const auto seconds = doubleOf(value); seconds && *seconds > 0)
        meta.variationLength = *seconds;
}

void readVariations(EpisodeMeta& meta, std::string_view value) {
    meta.variations.clear();
    for (std::optional rest(value); rest;) {
        const auto [piece, following] = halves(*rest, ',');
        if (const auto index = signedIntegerOf(trimmed(piece)); index && *index > 0)
            meta.variations.push_back(*index);
        rest = following;
    }
}

void readStill(EpisodeMeta& meta, std::string_view value) {
    if (const auto seconds = doubleOf(value); seconds && *seconds >= 0)
        meta.still = *seconds;
}

void readFinal(EpisodeMeta& meta, std::string_view value) {
    const auto [title, summary] = halves(value, '|');
    meta.finalTitle = trimmed(title);
    meta.finalSummary = trimmed(summary.value_or(""));
}

struct Key {
    std::string_view name;
    void (*read)(EpisodeMeta& meta, std::string_view value);
};

// clang-format off
constexpr std::array<Key, 9> keys{{
    {"episode", readEpisode},
    {"length", readLength},
    {"variations", readVariations},
    {"variation", readVariation},
    {"still", readStill},
    {"teaches", [](EpisodeMeta& meta, std::string_view value) { meta.teaches = value; }},
    {"category", [](EpisodeMeta& meta, std::string_view value) { meta.category = value; }},
    {"tags", [](EpisodeMeta& meta, std::string_view value) { meta.tags = value; }},
    {"final", readFinal},
}};
// clang-format on

const Pattern& headerPattern() {
    static const Pattern pattern(R"(^\s*//\s*@(episode|length|variations|variation|still|teaches)"
                                 R"(|category|tags|final)\s+(.*)$)");
    return pattern;
}

} // namespace

EpisodeMeta EpisodeMeta::parse(std::string_view source) {
    EpisodeMeta meta;
    for (const std::string_view line : linesOf(source)) {
        // A search for one character spares the engine nearly all lines.
        if (line.find('@') == std::string_view::npos)
            continue;
        const auto groups = headerPattern().firstMatch(line);
        if (!groups)
            continue;
        for (const Key& key : keys)
            if (key.name == (*groups)[1])
                key.read(meta, trimmed((*groups)[2]));
    }
    return meta;
}

} // namespace tarnwick
