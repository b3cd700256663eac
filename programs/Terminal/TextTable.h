// Tables as text, for fixed-width fonts.
#pragma once

#include <string>
#include <vector>

namespace tarnwick {

// A line for each of `rows`, which all have as many cells as the first: columns as wide as their
// cells, two spaces apart, no spaces at the end of a line. Widths are counted in bytes.
std::string textTable(const std::vector<std::vector<std::string>>& rows);

} // namespace tarnwick
