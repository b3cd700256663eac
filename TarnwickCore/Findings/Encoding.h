// Whether the text of an episode is text.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <optional>
#include <string_view>

namespace tarnwick {

// The first byte of `source` that is not UTF-8 (The Unicode Standard, table 3-7) or is a NUL, as an
// error at its place; nothing where all is text.
std::optional<Diagnostic> encodingFault(std::string_view source);

} // namespace tarnwick
