// Records made from lists: nested, with designators, with default members, partly (1.5).
// @expects 1 2 3 4 | 9 0 0 | 5 6 | 7 8 1 | 2 0 | 3
#include <metal_stdlib>
using namespace metal;

struct Inner { float a, b; };
struct Outer { Inner first; Inner second; };
struct Light { float3 colour; float power; };
struct Defaults { float x = 7; float y = 8; int n = 1; };

Inner made(float x) { return {x, x + 1}; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Outer o = {{in[1], 2}, {3, in[4]}};
    out[0] = o.first.a; out[1] = o.first.b; out[2] = o.second.a; out[3] = o.second.b;
    Light light = {.colour = float3(in[9], 0, 0)};
    out[4] = light.colour.x; out[5] = light.colour.y; out[6] = light.power;
    Inner i = made(in[5]);
    out[7] = i.a; out[8] = i.b;
    Defaults d;
    out[9] = d.x; out[10] = d.y; out[11] = d.n;
    int few[4] = {int(in[2])};
    out[12] = few[0]; out[13] = few[3];
    Defaults e{.x = 1, .n = 2};
    out[14] = e.x + e.n;
}
