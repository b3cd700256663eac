// A line of source with a mark below a place in it, for terminals.
#pragma once

#include "programs/Terminal/Colours.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

// The line `line` with its number, and below it a caret under `column` (from 1, in bytes) and the
// word that begins there; no caret if the line has no such column. Tabs become spaces up to the
// next fourth cell, wide characters are two cells, control characters are question marks. Long
// lines are cut around the column.
std::string excerpt(std::string_view line, std::int64_t number, std::int64_t column,
                    Colours colours);

} // namespace tarnwick
