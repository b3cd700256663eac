// Threadgroup memory that threads write in smaller parts than its members, beside atomic values,
// which need words of their own.
// @runs parts 16 8
// @expects 1 3 5 7 9 11 13 15 | 0 -1 -2 -3 -4 -5 -6 -7 | 8 28 2 10
// @expects 1 3 5 7 9 11 13 15 | 0 -1 -2 -3 -4 -5 -6 -7 | 8 92 2 18
#include <metal_stdlib>
using namespace metal;

struct Cell {
    short first; // two bytes of padding behind it
    int second;
    half3 third;
};

struct Shared {
    uchar bytes[8];
    Cell cells[8];
    atomic_uint counts[2];
    half tail[6];
};

kernel void parts(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]],
                  uint lane [[thread_index_in_threadgroup]],
                  uint group [[threadgroup_position_in_grid]]) {
    threadgroup Shared s;
    if (lane < 2u) atomic_store_explicit(&s.counts[lane], 0u, memory_order_relaxed);
    if (lane < 6u) s.tail[lane] = half(lane);
    threadgroup_barrier(mem_flags::mem_threadgroup);

    // Neighbours write the bytes of one word.
    s.bytes[lane] = uchar(lane);
    threadgroup char* seconds = (threadgroup char*)&s.cells[0];
    threadgroup int& mine = *(threadgroup int*)(seconds + lane * sizeof(Cell) + 4u);
    mine = 0;
    for (uint k = 0u; k < 4u; k++)
        seconds[lane * sizeof(Cell) + 4u + k] = char((-int(lane) >> int(8u * k)) & 255);
    s.cells[lane].third = half3(half(lane) + half(1.0f));
    atomic_fetch_add_explicit(&s.counts[0], 1u, memory_order_relaxed);
    atomic_fetch_add_explicit(&s.counts[1], i, memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);

    device float* results = out + group * 20u;
    results[lane] = float(s.bytes[lane]) + float(s.cells[lane].third.y);
    results[8u + lane] = float(s.cells[lane].second);
    if (lane == 0u) {
        results[16] = float(atomic_load_explicit(&s.counts[0], memory_order_relaxed));
        results[17] = float(atomic_load_explicit(&s.counts[1], memory_order_relaxed));
        results[18] = float(s.tail[2]);
        results[19] = float(s.bytes[group + 3u]) + float(s.bytes[group * 7u]) + 7.0f;
    }
}
