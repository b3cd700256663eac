// What helps those who write GLSL, HLSL or a shader site's habits where Metal has something else.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string>
#include <string_view>

namespace tarnwick {

// A hint for a compiler's message about `line`, the line of the source that it points at: "vec3 is
// float3 in Metal". Empty where the table has none: only names that the compiler complains about
// are looked up, so an episode may well define a mod() of its own. Any bytes are taken.
std::string hintOf(const Diagnostic& message, std::string_view line);

// The hint for a name that the compiler does not know; empty where the table has none.
std::string hintForName(std::string_view name);

// The name that a message says is unknown; empty for messages of other kinds.
std::string_view unknownName(std::string_view message);

} // namespace tarnwick
