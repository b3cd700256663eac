// The differences between two texts, line by line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarnwick::player {

struct DiffLine {
    enum class Kind : std::uint8_t { same, removed, added };

    Kind kind = Kind::same;
    std::size_t before = 0, after = 0; // its number in each text, from 1; 0 where it is not
    std::string_view text;             // without its end; refers to one of the texts

    bool operator==(const DiffLine&) const = default;
};

// All lines of `before` and `after` in one list; removed lines are before added ones. CR before LF
// belongs to the line. Time O(n m / 64) for n and m lines.
std::vector<DiffLine> textDiff(std::string_view before, std::string_view after);

} // namespace tarnwick::player
