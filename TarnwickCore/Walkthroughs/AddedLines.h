// Finds the lines that a version of a text adds to the version before.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace tarnwick {

// For each line of `current`, whether it is not in `previous`, by a longest common subsequence of
// whole lines. If there are several, lines of `previous` are skipped first. For n and m lines: time
// O(n m) in steps of 64 pairs, memory O(n sqrt m).
std::vector<bool> addedLines(std::span<const std::string_view> previous,
                             std::span<const std::string_view> current);

} // namespace tarnwick
