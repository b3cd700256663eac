// The origin of an episode: the item of the sharing service from which it was forked, in a line `//
// @forked-from ITEM` of its source.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// An item is "episode-07", "episode-07/stage-name" or "s/id": a published episode by its number of
// two or three digits, one of its stages, or a shader that a user shared. Digits and letters are
// ASCII. Pure; accepts any bytes; never fails. May be called from any thread.
struct ForkedFrom {
    // The item of the first line with a valid item; nothing without such a line.
    static std::optional<std::string> parse(std::string_view source);

    static bool isValid(std::string_view item);

    // `source` with the line inserted at its beginning. Unchanged if the item is invalid, or if
    // parse() finds an item: an origin is never replaced. A line with an invalid item names no
    // origin.
    static std::string insert(std::string_view item, std::string_view source);

    // The item of a published episode from its file name: "episode-07" for "07-glow.metal". Nothing
    // unless the name begins with a number of two or three digits.
    static std::optional<std::string> item(std::string_view bundledFile);

    // "episode-07" for "7" and "07".
    static std::string episodeItem(std::string_view digits);
};

} // namespace tarnwick
