// The compiler's findings about an episode, for people and for programs to read.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

// "EPISODE:line:column: severity: message" for each finding, a line each. Line 0 is the generated
// code around the episode.
std::string findingsText(std::string_view episodePath, std::span<const Diagnostic> findings);

// {"episode", "findings": [{"severity", "line", "column", "message", "id"}]}, and "text" with the
// compiler's own words where there are any.
std::string findingsJSON(std::string_view episodePath, std::span<const Diagnostic> findings,
                         std::string_view compilerText);

} // namespace tarnwick
