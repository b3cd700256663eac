// Tables as text, for a terminal's fixed letters.
#pragma once

#include <string>
#include <vector>

namespace tarnwick {

// A line for each of `rows`, which all have as many cells as the first: columns as wide as they
// need, two blanks apart, no blanks at a line's end. Widths are counted in bytes.
std::string textTable(const std::vector<std::vector<std::string>>& rows);

} // namespace tarnwick
