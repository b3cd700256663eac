// Each header of the library by itself, without metal_stdlib, and names with metal:: (6.1).
// @expects 3 | 1 | 2 | 4 | 8
#include <metal_common>
#include <metal_math>
#include <metal_integer>
#include <metal_relational>
#include <metal_geometric>
#include <metal_matrix>
#include <metal_graphics>
#include <metal_texture>
#include <metal_compute>
#include <metal_atomic>
#include <metal_pack>
#include <metal_array>
#include <metal_limits>
#include <metal_numeric>
#include <metal_type_traits>
#include <metal_simdgroup>
#include <metal_quadgroup>
#include <metal_types>
#include <metal_config>
#include <metal_assert>
#include <simd/simd.h>

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = metal::clamp(in[9], 0.0f, 3.0f);
    out[1] = metal::cos(in[0]);
    out[2] = metal::popcount(uint(in[3]));
    out[3] = metal::determinant(metal::float2x2(2.0f));
    metal::array<metal::float2, 2> pair = {metal::float2(in[3]), metal::float2(5)};
    out[4] = pair[0].x + pair[1].y;
}
