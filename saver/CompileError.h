// The compile error of an episode, for a small screen.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickRender/ShaderError.h"

#include <string>

namespace tarnwick {

// The first error about `episode`, with its hint: "shader.metal:3:5: unknown type name 'vec3' (vec3
// is float3 in Metal)". A second line has the number of further errors. The text of `error` if the
// compiler reported none at a line.
std::string compileErrorText(const Episode& episode, const ShaderError& error);

} // namespace tarnwick
