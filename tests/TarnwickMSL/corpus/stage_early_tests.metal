// early_fragment_tests: what depth hides does not run, and so writes nothing (5.1.2).
// @draws triangle 3 2 depth
// @pixel 2 2 : 1 0 0 1
// @expects 64 0
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; uint instance; };

vertex Corner corner(uint v [[vertex_id]], uint i [[instance_id]], device float* out [[buffer(0)]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, i == 0 ? 0.25 : 0.5, 1), i};
}
[[early_fragment_tests]] fragment float4 counted(Corner in [[stage_in]],
                                                 device atomic_uint* counts [[buffer(2)]],
                                                 device float* out [[buffer(0)]]) {
    uint before = atomic_fetch_add_explicit(&counts[in.instance], 1, memory_order_relaxed);
    if (in.instance == 0 && before == 63) out[0] = 64;
    if (before == 0) out[1] = in.instance;
    return float4(1 - in.instance, 0, 0, 1);
}
