// Texels as every component type that a texture may have.
// @texture 0 2d float 4x4
// @texture 1 2d half 4x4
// @texture 2 2d int 4x4
// @texture 3 2d uint 4x4
// @texture 4 2d short 4x4
// @texture 5 2d ushort 4x4
// @expects 12 13 12 13 14 15
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], texture2d<float> a [[texture(0)]],
                  texture2d<half> b [[texture(1)]], texture2d<int> c [[texture(2)]],
                  texture2d<uint> d [[texture(3)]], texture2d<short> e [[texture(4)]],
                  texture2d<ushort> f [[texture(5)]]) {
    constexpr sampler s;
    uint2 at = uint2(1, 1);
    float2 uv = 0.375;
    float4 floats = a.read(at);
    half4 halves = b.sample(s, uv);
    int4 ints = c.sample(s, uv);
    uint4 uints = d.read(at);
    short4 shorts = e.sample(s, uv);
    ushort4 ushorts = f.gather(s, uv, int2(0), component::w);
    out[0] = floats.x;
    out[1] = float(halves.y);
    out[2] = float(ints.x);
    out[3] = float(uints.y);
    out[4] = float(shorts.z);
    out[5] = float(min(min(ushorts.x, ushorts.y), min(ushorts.z, ushorts.w)));
}
