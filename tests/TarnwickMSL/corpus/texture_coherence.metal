// Textures whose writes other threads see: memory_coherence_device (of version 3.2).
// @texture 0 2d float 4x4
// @texture 1 2d uint 4x4
// @expects 24 | 7
#include <metal_stdlib>
using namespace metal;

typedef texture2d<float, access::read_write, memory_coherence_device> Shared;

static float twice(Shared picture, uint2 at) {
    picture.write(picture.read(at) * 2, at);
    picture.fence();
    return picture.read(at).x;
}
kernel void check(device float* out [[buffer(0)]], Shared picture [[texture(0)]],
                  texture2d<uint, access::read_write, memory_coherence_threadgroup> own [[texture(1)]]) {
    out[0] = twice(picture, uint2(1, 1));
    own.write(uint4(7), uint2(2, 2));
    own.fence();
    out[1] = float(own.read(uint2(2, 2)).x);
}
