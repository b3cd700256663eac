// Lines of an episode that begin like a declaration (// @param, // @still, ...) but are not read as
// one, or not as they are written.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string_view>
#include <vector>

namespace tarnwick {

// A warning for each such line of `source`, in order, at the word that is at fault: "@param is
// ignored: the maximum 0 is not greater than the minimum 1". An error for a parameter whose name no
// program compiles with. Any bytes are taken; never fails.
std::vector<Diagnostic> declarationWarnings(std::string_view source);

} // namespace tarnwick
