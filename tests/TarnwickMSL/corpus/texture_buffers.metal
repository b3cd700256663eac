// Textures over buffers: reading, writing, sizes, atomic operations.
// @texture 0 buffer float 6
// @texture 1 buffer half 6
// @texture 2 buffer r32uint 6
// @texture 3 buffer int 5
// @runs fill 6 2
// @runs check
// @expects 1 4 0 | 6 6 5 | 12 9 | 21 27 0 | 24 1 | 42 -1
#include <metal_stdlib>
using namespace metal;

kernel void fill(texture_buffer<half, access::write> halves [[texture(1)]],
                 texture_buffer<uint, access::read_write> counts [[texture(2)]],
                 uint at [[thread_position_in_grid]]) {
    halves.write(half4(2 * at, at, 0, 1), at);
    counts.atomic_fetch_add(0u, uint4(at + 5 - 3 * (at & 1)));
    counts.atomic_fetch_max(1u, uint4(at * 5 + 2));
}

float sum(texture_buffer<float> of) {
    float total = 0;
    for (uint at = 0; at < of.get_width(); at++)
        total += of.read(at).x;
    return total;
}

kernel void check(device float* out [[buffer(0)]], texture_buffer<float> numbers [[texture(0)]],
                  texture_buffer<half> halves [[texture(1)]],
                  texture_buffer<uint, access::read_write> counts [[texture(2)]],
                  texture_buffer<int, access::read_write> wholes [[texture(3)]]) {
    out[0] = numbers.read(0u).x;
    out[1] = numbers.read(0u).w;
    out[2] = numbers.read(6u).x + numbers.read(4000000000u).x;
    out[3] = float(numbers.get_width());
    out[4] = float(halves.get_width());
    out[5] = float(wholes.get_width());
    out[6] = float(halves.read(5u).x) + float(halves.read(2u).y);
    out[7] = float(wholes.read(4u).w) + 1;
    out[8] = sum(numbers);
    out[9] = float(counts.read(1u).x);
    wholes.write(int4(-1), 5u);
    out[10] = float(wholes.read(5u).x);
    out[11] = float(counts.atomic_exchange(0u, uint4(1)).x) - 13;
    out[12] = float(counts.read(0u).x);
    wholes.write(int4(42, -1, 0, 0), 2u);
    wholes.fence();
    out[13] = float(wholes.read(2u).x);
    out[14] = float(wholes.read(2u).y);
}
