// A line of source with a mark under a place in it, for terminals.
#pragma once

#include "programs/Terminal/Colours.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

// Line `number` of a source, which is `line`, behind its number, and below it a caret under
// `column` (from 1, in bytes) and the word that begins there; without the caret where the line has
// no such column. Tabs become blanks up to the next fourth cell, wide characters count two cells,
// controls are question marks, and of long lines the part around the column is shown.
std::string excerpt(std::string_view line, std::int64_t number, std::int64_t column,
                    Colours colours);

} // namespace tarnwick
