// Overrides of WGSL's vertex functions for values of a draw that WGSL has no built-in values for.
#pragma once

#include <cstdint>

namespace tarnwick::msl {

// uint: the [[base_vertex]] and [[base_instance]] of all draws of the pipeline. Default: 0.
inline constexpr std::uint32_t baseVertexConstant = 7, baseInstanceConstant = 8;

} // namespace tarnwick::msl
