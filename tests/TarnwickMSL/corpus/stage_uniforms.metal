// constant and device buffers, and literal data, in both stages of a draw (5.2.1).
// @draws strip 4
// @pixel 0 7 : 2 4 0 1
// @pixel 7 0 : 2 4 0 1
#include <metal_stdlib>
using namespace metal;

struct Numbers { float4 first; float4 second; };
struct Corner { float4 at [[position]]; float two; };

vertex Corner corner(uint v [[vertex_id]], constant Numbers& in [[buffer(1)]]) {
    return {float4(float2(v & 1, v >> 1) * 2 - 1, 0, 1), in.first.z};
}
fragment float4 four(Corner in [[stage_in]], constant float* numbers [[buffer(1)]]) {
    return float4(in.two, numbers[int(in.two) * 2], 0, 1);
}
