// What the author of an episode is told about it.
#pragma once

#include "TarnwickCore/Finding.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The messages of the compiler about `source`, an episode's text, said about the author's own
// lines and with hints. What follows from text that runs into generated code becomes one error at
// the bracket that is never closed; functions that are missing become one error, followed by a note
// that lists what the kind of episode defines. A hint stands at its first place only. Any bytes are
// taken; pure.
std::vector<Finding> findingsOf(std::string_view source, std::span<const Diagnostic> diagnostics);

// `findings` of `source`, and behind them the warnings about its declarations.
std::vector<Finding> withDeclarationWarnings(std::string_view source,
                                             std::vector<Finding> findings);

// The first error in one line, for screens without room: "line 3: unknown type name 'vec3' (vec3 is
// float3 in Metal)". Without a line for errors outside of the author's text; empty without errors.
std::string firstError(std::span<const Finding> findings);

} // namespace tarnwick
