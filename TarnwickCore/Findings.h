// The findings about an episode: diagnostics for its author, with hints.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Finding.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The findings for the compiler's `diagnostics` of the episode, at the author's own lines. Errors
// in generated code that an unclosed bracket causes become one error at that bracket. Missing
// functions become one error and a note that lists the functions of this kind of episode. Each hint
// is given once, at its first finding. Pure.
std::vector<Finding> findingsOf(const Episode& episode, std::span<const Diagnostic> diagnostics);

// `findings`, followed by the warnings about the episode's declarations.
std::vector<Finding> withDeclarationWarnings(const Episode& episode, std::vector<Finding> findings);

// The first error in one line, for small screens: "line 3: unknown type name 'vec3' (vec3 is float3
// in Metal)". Errors outside the author's text have no line. Empty without errors.
std::string firstError(std::span<const Finding> findings);

std::vector<Finding> errorsAmong(std::span<const Finding> findings);

// "PLACE: message (hint)"; without the place if the finding has no line.
std::string inOneLine(const Finding& finding, std::string_view place);

// The first line with an error in the compiler's own text; the first line of a text without errors.
std::string firstErrorLine(std::string_view compilerText);

} // namespace tarnwick
