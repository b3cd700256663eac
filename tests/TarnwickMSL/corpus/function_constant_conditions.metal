// Arguments that exist for some values of function constants alone (5.8.1): buffers, textures,
// samplers, threadgroup memory, two with one index.
// @constant hasScale true
// @constant hasTexture true
// @constant hasBias false
// @texture 0 2d float 4x4
// @sampler 0
// @runs check 1
// @runs other 1
// @expects 6 1 2 0 | 12 5
#include <metal_stdlib>
using namespace metal;

constant bool hasScale [[function_constant(0)]];
constant bool hasTexture [[function_constant(1)]];
constant bool hasBias [[function_constant(2)]];
constant bool hasNoTexture = !hasTexture;
constant bool hasBoth = hasScale && hasTexture;

float biased(float value, constant float* bias) {
    if (hasBias) return value + bias[1];
    return value;
}

kernel void check(device float* out [[buffer(0)]],
                  constant float* in [[buffer(1), function_constant(hasScale)]],
                  constant float4* bias [[function_constant(hasBias), buffer(1)]],
                  texture2d<float> image [[texture(0), function_constant(hasTexture)]],
                  texture3d<uint> volume [[texture(0), function_constant(hasNoTexture)]],
                  sampler point [[sampler(0), function_constant(hasBoth)]]) {
    out[0] = hasScale ? in[3] * 2 : bias[0].x;
    out[1] = biased(1, in);
    if (hasTexture)
        out[2] = image.sample(point, float2(0.5)).x == image.read(uint2(2, 2)).x ? 2 : 3;
    else
        out[2] = volume.read(uint3(0)).x;
    out[3] = 0;
    if (hasBias) out[3] = bias[2].y;
}

kernel void other(device float* out [[buffer(0)]], device uint* scratch [[buffer(2)]],
                  constant float2& in [[buffer(1), function_constant(hasBias)]],
                  device atomic_uint* sum [[buffer(3), function_constant(hasBias)]],
                  texture2d<float, access::write> made [[texture(5), function_constant(hasBias)]],
                  threadgroup float* shared [[threadgroup(0), function_constant(hasBias)]]) {
    if (hasBias) {
        out[4] = in.x;
        atomic_fetch_add_explicit(sum, 1u, memory_order_relaxed);
        made.write(float4(1), uint2(0));
        shared[0] = in.y;
        out[5] = shared[0];
    } else {
        out[4] = 12;
        out[5] = 5 + scratch[0];
    }
}
