#include "TarnwickCore/EpisodeMeta.h"

#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick {
namespace {

// `text` up to the first `mark`, and the text after it; the second is absent without a mark.
std::pair<std::string_view, std::optional<std::string_view>> halves(std::string_view text,
                                                                    char mark) {
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos)
        return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

// Each reads `value` into the record and returns whether the whole of it is valid for its key.
bool readEpisode(EpisodeMeta& meta, std::string_view value) {
    const auto [number, title] = halves(value, ' ');
    const std::optional<std::int64_t> read = signedIntegerOf(number);
    if (!read)
        return false;
    meta.number = *read;
    if (title)
        meta.title = *title;
    return true;
}

bool readLength(EpisodeMeta& meta, std::string_view value) {
    const auto seconds = doubleOf(value);
    if (!seconds || !(*seconds > 0))
        return false;
    meta.length = *seconds;
    return true;
}

bool readVariation(EpisodeMeta& meta, std::string_view value) {
    const auto seconds = doubleOf(value);
    if (!seconds || !(*seconds > 0))
        return false;
    meta.variationLength = *seconds;
    return true;
}

bool readVariations(EpisodeMeta& meta, std::string_view value) {
    meta.variations.clear();
    bool areAllRead = true;
    for (std::optional rest(value); rest;) {
        const auto [piece, following] = halves(*rest, ',');
        const auto index = signedIntegerOf(trimmed(piece));
        if (index && *index > 0)
            meta.variations.push_back(*index);
        else
            areAllRead = false;
        rest = following;
    }
    return areAllRead;
}

bool readStill(EpisodeMeta& meta, std::string_view value) {
    const auto seconds = doubleOf(value);
    if (!seconds || !(*seconds >= 0))
        return false;
    meta.still = *seconds;
    return true;
}

template <std::string EpisodeMeta::*text> bool readText(EpisodeMeta& meta, std::string_view value) {
    meta.*text = value;
    return !value.empty();
}

bool readFinal(EpisodeMeta& meta, std::string_view value) {
    const auto [title, summary] = halves(value, '|');
    meta.finalTitle = trimmed(title);
    meta.finalSummary = trimmed(summary.value_or(""));
    return !value.empty();
}

struct Key {
    std::string_view name, value; // `value` describes the valid values, for people
    bool (*read)(EpisodeMeta& meta, std::string_view value);
};

// clang-format off
constexpr std::array<Key, 9> keys{{
    {"episode", "a number and a title, as in // @episode 12 Light through water", readEpisode},
    {"length", "a number of seconds above 0", readLength},
    {"variations", "numbers above 0, as in // @variations 3, 5", readVariations},
    {"variation", "a number of seconds above 0", readVariation},
    {"still", "a number of seconds from 0 on", readStill},
    {"teaches", "a text", readText<&EpisodeMeta::teaches>},
    {"category", "a text", readText<&EpisodeMeta::category>},
    {"tags", "a text", readText<&EpisodeMeta::tags>},
    {"final", "a title, and behind a bar a summary", readFinal},
}};
// clang-format on

const Pattern& headerPattern() {
    static const Pattern pattern(R"(^\s*//\s*@(episode|length|variations|variation|still|teaches)"
                                 R"(|category|tags|final)\s+(.*)$)");
    return pattern;
}

} // namespace

EpisodeMeta EpisodeMeta::parse(std::string_view source, std::set<std::string_view>* given) {
    EpisodeMeta meta;
    for (const std::string_view line : linesOf(source)) {
        // Searching for one character first avoids running the expression on nearly all lines.
        if (line.find('@') == std::string_view::npos)
            continue;
        const auto groups = headerPattern().firstMatch(line);
        if (!groups)
            continue;
        for (const Key& key : keys)
            if (key.name == (*groups)[1] && key.read(meta, trimmed((*groups)[2])) && given)
                given->insert(key.name);
    }
    return meta;
}

std::vector<std::string_view> EpisodeMeta::keyNames() {
    std::vector<std::string_view> names;
    for (const Key& key : keys)
        names.push_back(key.name);
    return names;
}

std::string_view EpisodeMeta::valueOf(std::string_view keyName) {
    const auto key = std::ranges::find(keys, keyName, &Key::name);
    return key == keys.end() ? "" : key->value;
}

bool EpisodeMeta::takes(std::string_view keyName, std::string_view value) {
    const auto key = std::ranges::find(keys, keyName, &Key::name);
    EpisodeMeta meta;
    return key != keys.end() && key->read(meta, value);
}

} // namespace tarnwick
