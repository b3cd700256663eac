// What an episode opens and never closes, or closes without having opened it.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <optional>
#include <string_view>

namespace tarnwick {

// The first fault of `source` in the pairing of {}, (), [], comments and conditional directives, as
// an error: "'{' of line 67 is never closed". Where indentation shows which brace of several lacks
// its partner, the place is that brace's. Nothing where all are paired, and nothing where a macro's
// body is not, since code that uses it may rightly look unpaired. Any bytes are taken.
std::optional<Diagnostic> unpairedBracket(std::string_view source);

// Where the text ends in the middle of a declaration, an error at its last character of code.
std::optional<Diagnostic> unfinishedEnd(std::string_view source);

} // namespace tarnwick
