// Atomic operations on single texels: the first component counts, the others are 0.
// @texture 0 2d r32uint 4x4
// @texture 1 1d_array r32int 4 2
// @texture 2 3d r32uint 2x2x2
// @texture 3 2d_array r32int 4x4 2
// @texture 4 1d r32uint 4
// @runs count 64 16
// @runs check
// @expects 65 0 1 | 2080 | 7 23 | -5 3 1 0 9 | 105 | 0 205 | 0 12 | 4 | 2
#include <metal_stdlib>
using namespace metal;

// Textures that are chosen at run time: only the operation on the one that is meant happens.
template <class T> uint add(T first, T second, bool isFirst) {
    T chosen = isFirst ? first : second;
    return chosen.atomic_fetch_add(0u, uint4(4)).x;
}

kernel void count(texture2d<uint, access::read_write> flat [[texture(0)]],
                  texture1d<uint, access::read_write> line [[texture(4)]],
                  uint at [[thread_position_in_grid]]) {
    flat.atomic_fetch_add(uint2(0, 0), uint4(1));
    line.atomic_fetch_add(1u, uint4(at + 1));
}

kernel void check(device float* out [[buffer(0)]],
                  texture2d<uint, access::read_write> flat [[texture(0)]],
                  texture1d_array<int, access::read_write> lines [[texture(1)]],
                  texture3d<uint, access::read_write> solid [[texture(2)]],
                  texture2d_array<int, access::read_write> layers [[texture(3)]],
                  texture1d<uint, access::read_write> line [[texture(4)]],
                  constant float* in [[buffer(1)]]) {
    uint4 counted = flat.atomic_load(uint2(0, 0));
    out[0] = float(counted.x); // the texel was 1
    out[1] = float(counted.y);
    out[2] = float(flat.atomic_exchange(ushort2(0, 0), uint4(7)).x == 65);
    out[3] = float(line.atomic_load(1u).x) - 2;
    out[4] = float(flat.atomic_fetch_or(uint2(0, 0), uint4(16)).x);
    out[5] = float(flat.atomic_fetch_and(uint2(0, 0), uint4(3)).x);
    lines.atomic_store(int4(-5), 2, 1);
    out[6] = float(lines.atomic_fetch_max(2u, 1, int4(3)).x);
    out[7] = float(lines.atomic_fetch_min(2u, 1, int4(9)).x);
    int4 expected = int4(3);
    out[8] = float(lines.atomic_compare_exchange_weak(2u, 1, &expected, int4(9)));
    out[9] = float(lines.atomic_compare_exchange_weak(2u, 1, &expected, int4(11)));
    out[10] = float(expected.x);
    solid.atomic_fetch_sub(uint3(1, 0, 1), uint4(3));
    solid.atomic_fetch_xor(ushort3(1, 0, 1), uint4(6));
    out[11] = float(solid.read(uint3(1, 0, 1)).x) + 4;
    // Outside the texture nothing happens, and zero comes back.
    out[12] = float(layers.atomic_fetch_add(uint2(4, 0), 1, int4(100)).x);
    layers.atomic_fetch_add(uint2(3, 0), 1, int4(101));
    layers.atomic_fetch_add(uint2(0, 4), 1, int4(1));
    layers.atomic_fetch_add(uint2(3, 0), 2, int4(1));
    out[13] = float(layers.read(uint2(3, 0), 1).x);
    bool isFirst = in[1] > 2;
    out[14] = float(add(line, line, isFirst)) - 1;
    out[15] = float(line.read(0u).x) + 7;
    out[16] = float(layers.get_width());
    out[17] = float(layers.get_array_size());
}
