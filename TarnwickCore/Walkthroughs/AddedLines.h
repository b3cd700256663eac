// Which lines a version of a text has that the version before it had not.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace tarnwick {

// For each line of `current`, whether it is new against `previous`, by a longest common subsequence
// of whole lines. Where there are several, a line of `previous` is skipped before one of
// `current` counts as new. Of n and m lines: time O(n m), 64 pairs at a step; memory O(n sqrt m).
std::vector<bool> addedLines(std::span<const std::string_view> previous,
                             std::span<const std::string_view> current);

} // namespace tarnwick
