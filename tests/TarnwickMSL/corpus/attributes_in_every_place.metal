// Attributes before a function, as a list, in several lists; arguments without an index get the
// lowest free one (5.1, 5.2.1).
// @draws triangle 3
// @pixel 2 2 : 1 2 4 1
// @pixel 5 2 : 1 5 4 1
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]] [[invariant]];
    float two [[flat, user(two)]];
};

[[vertex]] Corner corner(uint v [[vertex_id]]) { return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1), 2}; }

[[fragment, early_fragment_tests]] float4 seen(Corner in [[stage_in]], device float* out,
                                               constant float* numbers) {
    return float4(numbers[1], in.at.x > 4 ? numbers[5] : in.two, numbers[4], 1);
}
fragment [[early_fragment_tests]] half4 other(constant float& x) { return x; }
[[kernel]] [[max_total_threads_per_threadgroup(64)]] void unused(device float* out) { out[0] = 1; }
