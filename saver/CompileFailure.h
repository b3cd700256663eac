// Why an episode does not compile, for a screen with room for a line or three.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickRender/ShaderError.h"

#include <string>

namespace tarnwick {

// The first error about `episode`, with its hint: "shader.metal:3:5: unknown type name 'vec3' (vec3
// is float3 in Metal)", and in a second line how many more there are. The error's own text where
// the compiler found none.
std::string compileFailure(const Episode& episode, const ShaderError& error);

} // namespace tarnwick
