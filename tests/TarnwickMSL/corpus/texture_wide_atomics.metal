// Atomic operations of 64 bits on textures; devices without them refuse the pipelines.
#include <metal_stdlib>
using namespace metal;

kernel void flat(texture2d<ulong, access::read_write> picture [[texture(0)]],
                 uint2 at [[thread_position_in_grid]]) {
    picture.atomic_max(at, ulong4(ulong(at.x) << 40 | at.y));
}
kernel void layered(texture2d_array<ulong, access::read_write> pictures [[texture(0)]],
                    texture_buffer<ulong, access::read_write> line [[texture(1)]],
                    uint3 at [[thread_position_in_grid]]) {
    pictures.atomic_min(ushort2(at.xy), at.z, ulong4(at.x));
    line.atomic_max(at.x, ulong4(pictures.get_width()));
}
fragment void drawn(texture3d<ulong, access::read_write> solid [[texture(0)]],
                    float4 at [[position]]) {
    solid.atomic_min(uint3(at.xyz), ulong4(1));
}
