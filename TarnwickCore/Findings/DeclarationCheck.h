// Warns about lines that look like a declaration (// @param, // @still, ...) and are ignored, or
// are not read as written.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string_view>
#include <vector>

namespace tarnwick {

// A warning for each such line of `source`, in order, at the wrong word: "@param is ignored: the
// maximum 0 is not greater than the minimum 1". An error for a parameter name with which no program
// compiles. Accepts any bytes; never fails.
std::vector<Diagnostic> declarationWarnings(std::string_view source);

} // namespace tarnwick
