// Finds the lines that a version of a text adds to the version before.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace tarnwick {

// For each line of `current`, whether it is not in `previous`, by a longest common subsequence of
// whole lines. Of several longest ones, it takes the one that skips lines of `previous` first. For
// n and m lines: time O(n m / 64), memory O(n sqrt m).
std::vector<bool> addedLines(std::span<const std::string_view> previous,
                             std::span<const std::string_view> current);

} // namespace tarnwick
