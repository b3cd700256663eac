// Read and written by one kernel, whose later reads see its writes after a fence.
// @texture 0 2d float 4x4
// @texture 1 cube int 2x2
// @texture 2 1d_array ushort 4 2
// @expects 24 48 | 225 | 1102 | 2
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]],
                  texture2d<float, access::read_write> picture [[texture(0)]],
                  texturecube<int, access::read_write> cube [[texture(1)]],
                  texture1d_array<ushort, access::read_write> lines [[texture(2)]]) {
    uint2 at = uint2(1, 1);
    picture.write(picture.read(at) * 2, at);
    picture.fence();
    out[0] = picture.read(at).x;
    picture.write(picture.read(at) * 2, at);
    picture.fence();
    out[1] = picture.read(at).x;
    cube.write(cube.read(at, 2) + 13, at, 2);
    cube.fence();
    out[2] = float(cube.read(at, 2).x);
    lines.write(lines.read(1, 1) + ushort4(1000), 1, 1);
    lines.fence();
    out[3] = float(lines.read(1, 1).x);
    out[4] = float(lines.get_array_size());
}
