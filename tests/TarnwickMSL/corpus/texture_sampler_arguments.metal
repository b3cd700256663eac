// Samplers that the program is given: their states, in arrays, chosen as it runs, compared with.
// @texture 0 2d float 4x4
// @texture 1 2d depth 4x4
// @sampler 0 repeat
// @sampler 1 clamp_to_zero linear
// @sampler 2 linear less
// @expects 1 0 | 4 | 6.5 1 | 0.5 | 1 0
#include <metal_stdlib>
using namespace metal;

static float4 through(texture2d<float> t, sampler s, float2 at) { return t.sample(s, at); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  texture2d<float> t [[texture(0)]], depth2d<float> depths [[texture(1)]],
                  array<sampler, 2> samplers [[sampler(0)]], sampler compared [[sampler(2)]],
                  sampler unbound [[sampler(3)]]) {
    float2 beyond = float2(1.1, 0.1), middle = 0.25;
    out[0] = t.sample(samplers[0], beyond).x;
    out[1] = t.sample(samplers[1], float2(1.2)).x;
    out[2] = t.sample(unbound, beyond).x;
    out[3] = through(t, samplers[int(in[1])], middle).x;
    out[4] = through(t, samplers[int(in[0])], middle - 0.1).x;
    out[5] = depths.sample_compare(compared, middle, 5.0 / 8192);
    out[6] = t.sample(in[3] > 2 ? samplers[0] : samplers[1], beyond).x;
    out[7] = t.sample(in[3] < 2 ? samplers[0] : samplers[1], float2(1.2)).x;
}
