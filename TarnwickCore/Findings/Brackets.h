// Finds brackets, comments and conditional directives that are not paired.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <optional>
#include <string_view>

namespace tarnwick {

// The first unpaired {}, (), [], comment or conditional directive of `source`, as an error: "'{' of
// line 67 is never closed". If indentation shows which of several braces is unpaired, the error is
// at that brace. Nothing if all are paired. Nothing also if the body of a macro is unpaired,
// because code that uses the macro may correctly look unpaired. Accepts any bytes.
std::optional<Diagnostic> unpairedBracket(std::string_view source);

// An error at the last character of code, if the text ends in the middle of a declaration.
std::optional<Diagnostic> unfinishedEnd(std::string_view source);

} // namespace tarnwick
