// Checks that the file of an episode is text.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <optional>
#include <string_view>

namespace tarnwick {

// An error at the first byte of `source` that is not UTF-8 (The Unicode Standard, table 3-7) or is
// NUL; nothing without one.
std::optional<Diagnostic> encodingError(std::string_view source);

} // namespace tarnwick
