// A plane that is turned and bent by its own coordinates, round after round, and a vector that is
// scaled by its own first component.
// @expects 1.6101617 -1.5707308 | 0.1146012 0.1144646
// @within 5e-4
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float2 q = float2(in[2], in[1]) * 0.25;
    float2x2 r = float2x2(0.8, 0.6, -0.6, 0.8);
    for (float i = 1.0; i < in[9]; i++) {
        q = r * q;
        q += sin(q.yx * i + in[1]) / i;
    }
    out[0] = q.x;
    out[1] = q.y;
    float2 c = float2(in[2], in[1]) * 0.25;
    for (int i = 0; i < int(in[5]); i++) c = sin(c) * c.x + 0.1;
    out[2] = c.x;
    out[3] = c.y;
}
