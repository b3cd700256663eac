// Where a shader came from: the item of the sharing service that it was forked from, written into
// its source as a line `// @forked-from ITEM`.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// Items are "episode-07", "episode-07/stage-name" and "s/id": a published episode by its number of
// two or three digits, one of its stages, something that a user shared. Digits and letters are
// ASCII's. Pure; any bytes are taken; nothing fails. May be called from any thread.
struct ForkedFrom {
    // Of the first line whose item is a valid one; nothing without such a line.
    static std::optional<std::string> parse(std::string_view source);

    static bool isValid(std::string_view item);

    // `source` with the line before it. Unchanged where the item is not valid, or where parse()
    // finds one: an origin is never replaced. A line whose item is not valid names no origin.
    static std::string insert(std::string_view item, std::string_view source);

    // The episode whose number the name of a file that we ship begins with ("07-glow.metal");
    // nothing unless that has two or three digits.
    static std::optional<std::string> item(std::string_view bundledFile);

    // "episode-07" for digits that spell 7.
    static std::string episodeItem(std::string_view digits);
};

} // namespace tarnwick
