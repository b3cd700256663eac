// Raster order groups of a buffer and of textures: the fragments of a pixel change them in the order
// of the triangles (5.7).
// @draws triangle 9
// @texture 1 2d float 8x8
// @expects 123
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    uint triangle [[flat]];
};

vertex Corner corner(uint v [[vertex_id]]) {
    uint n = v % 3;
    return {float4(n == 1 ? 3 : -1, n == 2 ? 3 : -1, 0, 1), v / 3 + 1};
}
fragment float4 layers(Corner in [[stage_in]], device float* out [[buffer(0), raster_order_group(0)]],
                       device float* digits [[raster_order_group(0), buffer(2)]],
                       texture2d<float> read [[texture(1), raster_order_group(1)]]) {
    uint pixel = uint(in.at.y) * 8 + uint(in.at.x);
    digits[pixel] = digits[pixel] * 10 + in.triangle;
    if (in.triangle == 3 && pixel == 9) out[0] = digits[pixel] + 0 * read.read(uint2(0)).x;
    return digits[pixel];
}
