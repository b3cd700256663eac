// Levels of textures that are written, known only at run time: writing, reading, sizes, counts.
// @texture 0 2d uint 8x4 1 3
// @texture 1 3d float 4x4x4 1 2
// @texture 2 cube int 4x4 1 2
// @runs paint 3
// @runs check
// @expects 100 101 102 | 8 4 4 2 2 1 | 3 | 2001 55 2 2 | 2222 | 0 0 | 12
#include <metal_stdlib>
using namespace metal;

kernel void paint(texture2d<uint, access::write> picture [[texture(0)]],
                  texture3d<float, access::read_write> solid [[texture(1)]],
                  texturecube<int, access::read_write> cube [[texture(2)]],
                  device float* out [[buffer(0)]], uint at [[thread_position_in_grid]]) {
    picture.write(uint4(100 + at), uint2(0, 0), at);
    picture.write(uint4(9), uint2(0, 0), at + 3); // no such level: nothing happens
    out[3 + 2 * at] = float(picture.get_width(at));
    out[4 + 2 * at] = float(picture.get_height(at));
    out[9] = float(picture.get_num_mip_levels());
    if (at == 1) {
        out[10] = solid.read(uint3(0, 0, 0), at).x;
        solid.write(float4(55), uint3(0, 0, 0), at);
        out[12] = float(solid.get_depth(at));
        out[13] = float(solid.get_num_mip_levels());
        cube.write(cube.read(uint2(1, 0), 2, at) + 20, uint2(1, 0), 2, at);
        out[15] = solid.read(uint3(0, 0, 0), at + 1).x;
        out[16] = solid.read(uint3(2, 0, 0), at).x;
    }
}

kernel void check(device float* out [[buffer(0)]], texture2d<uint> picture [[texture(0)]],
                  texture3d<float> solid [[texture(1)]], texturecube<int> cube [[texture(2)]]) {
    for (uint level = 0; level < 3; level++)
        out[level] = float(picture.read(uint2(0, 0), level).x);
    out[11] = solid.read(uint3(0, 0, 0), 1).x;
    out[14] = float(cube.read(uint2(1, 0), 2, 1).x);
    out[17] = float(picture.read(uint2(1, 1)).x);
}
