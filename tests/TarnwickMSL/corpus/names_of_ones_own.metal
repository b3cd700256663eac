// Variables, members and functions that bear names of attributes, stages, types and functions that
// mean something elsewhere (1.5).
// @expects 21 | 6 | 15 | 9 | 2.5 | 3 | 1
#include <metal_stdlib>
using namespace metal;

struct Names { float fragment, kernel, vertex, sampler_state, texture, buffer; };
float noise(float x) { return x + 1; }
float mod(float x, float y) { return x - y * floor(x / y); }
float2 rotate(float2 p, float a) { return float2x2(cos(a), sin(a), -sin(a), cos(a)) * p; }
float sq(float level) { return level * level; }
float mesh(float x) { return x; }
float topology(float x) { return mesh(x) < 3 && mesh(x) > 0 ? x + 2 : 0; }
#define lerp(a, b, t) mix(a, b, t)
#define vec2 float2

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Names n = {in[1], in[2], in[3], in[4], in[5], in[6]};
    out[0] = n.fragment + n.kernel + n.vertex + n.sampler_state + n.texture + n.buffer;
    float position = in[1], color = in[2], user = in[3];
    out[1] = position + color + user;
    float mesh = in[1], patch = in[2], object = in[3], visible = in[4], uniform = in[5];
    out[2] = mesh + patch + object + visible + uniform;
    out[3] = sq(in[3]) * noise(mod(in[4], 2)) + rotate(vec2(0), in[1]).x;
    out[4] = lerp(in[2], in[3], 0.5);
    out[5] = topology(in[1]);
    out[6] = uniform < in[6] && in[7] > in[2];
}
