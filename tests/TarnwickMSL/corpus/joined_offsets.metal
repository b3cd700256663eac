// Indices and pointers whose constants the optimiser joins across the members and the elements of
// one variable: indices less a constant, pointers moved there and back, lanes at run time; in each
// memory.
// @runs check 1 1
// @expects 112 23 131 47 2.5 | 112 23 131 47 2.5 | 112 23 131 47 2.5 | 112 23 131 47 2.5
// @expects 33 14 | 33 14 | 33 14 | 122 5 | 7 | 15 4 26 16
// @expects 112 23 131 47 2.5 6
#include <metal_stdlib>
using namespace metal;

struct Row {
    uint a[4], b[4];
    uint2 pairs[3];
    ushort words[6];
    float last;
};

// The element i of a, b, words or the lane i of pairs in row r is 100 * r + 10, 20, 40 or 30 + i.
#define ROW(r)                                                                                     \
    {                                                                                              \
        {100 * r + 10, 100 * r + 11, 100 * r + 12, 100 * r + 13},                                  \
            {100 * r + 20, 100 * r + 21, 100 * r + 22, 100 * r + 23},                              \
            {uint2(100 * r + 30, 100 * r + 31), uint2(100 * r + 32, 100 * r + 33),                 \
             uint2(100 * r + 34, 100 * r + 35)},                                                   \
            {100 * r + 40, 100 * r + 41, 100 * r + 42, 100 * r + 43, 100 * r + 44, 100 * r + 47},  \
            r + 2.5                                                                                \
    }
constant Row table[2] = {ROW(0), ROW(1)};

#define READ(space, rows, out)                                                                     \
    out[0] = rows[x9 - 8].a[x30 - 28];                                                             \
    out[1] = rows[x9 - 9].b[x30 % 7 + 1];                                                          \
    space uint2* pair##space = rows[x4 - 3].pairs + int(x9 - 8);                                   \
    pair##space = pair##space + int(x4 % 3 - 2);                                                   \
    out[2] = pair##space[0][x30 - 29];                                                             \
    space Row* row##space = rows + (x4 - 3);                                                       \
    row##space -= x9 - 8;                                                                          \
    out[3] = row##space->words[ushort(x30 - 25)];                                                  \
    out[4] = row##space->last;

// Indices of bytes are terms of one byte, as addresses are.
struct Bytes { uchar a[3], b[1], c[2]; };
constant Bytes bytes[3] = {{{1, 2, 3}, {4}, {5, 6}},
                           {{11, 12, 13}, {14}, {15, 16}},
                           {{21, 22, 23}, {24}, {25, 26}}};

struct Pairs { uint2 m[2]; };
struct Counted { Row rows[2]; atomic_uint count; };
struct Framed { uint head; Pairs inner; ushort tail; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device Row* rows [[buffer(2)]]) {
    const uint x4 = uint(in[4]), x9 = uint(in[9]), x30 = uint(in[30]);
    threadgroup Row shared[2];
    Row own[2];
    for (int r = 0; r < 2; r++)
        own[r] = rows[r] = shared[r] = table[r];
    threadgroup_barrier(mem_flags::mem_device | mem_flags::mem_threadgroup);
    READ(thread, own, out)
    READ(threadgroup, shared, (out + 5))
    READ(device, rows, (out + 10))
    READ(constant, table, (out + 15))

    Framed framed[1];
    for (int i = 0; i < 2; i++)
        framed[0].inner.m[i] = uint2(i * 20 + 13, i * 20 + 14);
    thread uint2* p = framed[0].inner.m + int(x9 - 8);
    p = p + int(x30 % 7 - 2);
    out[20] = p[0][x30 - 30], out[21] = p[int(x4) - 5][x9 - 8];
    threadgroup uint2 square[2][2];
    square[x4 - 4][x9 - 9] = uint2(13, 14), square[x4 - 3][x9 - 8] = uint2(33, 34);
    out[22] = square[x30 - 29][x9 - 8][x4 - 4], out[23] = square[0][x30 - 30][x4 - 3];
    float3x4 matrix = float3x4(0);
    matrix[x4 - 2][x9 - 7] = 33, matrix[x30 - 30][x9 - 6] = 14;
    out[24] = matrix[x9 - 7][x30 - 28], out[25] = matrix[x4 - 4].w;
    threadgroup uint* first = x4 > 9 ? shared[1].a : shared[x9 - 8].b;
    first[x30 - 29] += 1;
    out[26] = shared[1].b[x9 - 8], own[x4 - 4].b[x9 - 9] = 5;
    out[27] = own[0].b[0];
    out[28] = own[x4 - 4].a[x30 - 30] - 3;
    out[29] = bytes[x4 - 3].c[x30 - 30], out[30] = bytes[x9 - 9].b[x4 - 4];
    Bytes mine[3] = {bytes[0], bytes[1], bytes[2]};
    mine[x4 - 4].a[x9 - 8] = 7;
    out[31] = mine[x4 - 2].c[x9 - 8], out[32] = (mine + (x4 - 3))->c[x30 % 7 - 1];

    // The words of atomic values decide how the memory may be divided.
    threadgroup Counted counted;
    counted.rows[0] = table[0], counted.rows[1] = table[1];
    atomic_store_explicit(&counted.count, 6u, memory_order_relaxed);
    { READ(threadgroup, counted.rows, (out + 33)) }
    out[38] = atomic_fetch_add_explicit(&counted.count, x4, memory_order_relaxed);
}
