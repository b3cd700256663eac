// Hints for names and habits of GLSL, HLSL and shader sites, for which Metal has other names.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string>
#include <string_view>

namespace tarnwick {

// A hint for a diagnostic about `line`, its line of the source: "vec3 is float3 in Metal". Empty if
// the table has none. Only names that the compiler rejects are looked up, so an episode may define
// a mod() of its own. Accepts any bytes.
std::string hintOf(const Diagnostic& message, std::string_view line);

// The hint for a name that the compiler does not know; empty where the table has none.
std::string hintForName(std::string_view name);

// The name that a message says is unknown; empty for messages of other kinds.
std::string_view unknownName(std::string_view message);

} // namespace tarnwick
