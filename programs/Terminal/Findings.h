// The findings about an episode, for people and for tools.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Finding.h"
#include "programs/Terminal/Colours.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// For each finding "EPISODE:line:column: severity: message", and below it the line of `source` with
// a caret, and the hint. A finding about generated code has no line and column.
std::string findingsText(std::string_view episodePath, std::string_view source,
                         std::span<const Finding> findings, Colours colours);

// {"episode", "findings": [{"severity", "line", "column", "message", "id", "hint"}]}, and "text"
// with the compiler's text if there is any. Line 0 is generated code; "hint" is optional.
std::string findingsJSON(std::string_view episodePath, std::span<const Finding> findings,
                         std::string_view compilerText);

// Writes findingsText to standard error.
void printFindings(std::string_view path, std::string_view source,
                   std::span<const Finding> findings);
// Writes the findings of the compiler's messages about the episode to standard error.
void printFindings(const Episode& episode, std::span<const Diagnostic> diagnostics);

} // namespace tarnwick
