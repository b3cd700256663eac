// Pointers as integers and back, pointers into several buffers in one table, and pointers to
// threads' own variables in long arrays.
// @runs check
// @expects 8 | 1 1 | 3 4 5 | 7 9 | 105 33 | 48
// @refused An address in memory needs 64-bit integers, which the device lacks.
#include <metal_stdlib>
using namespace metal;

struct Entry { device float* place; uint count; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]],
                  device float* scratch [[buffer(2)]]) {
    out[0] = float(sizeof(device float*));
    uintptr_t number = uintptr_t(scratch);
    device float* again = (device float*)(number + 8);
    again[1] = 1.0;
    out[1] = scratch[3];
    uint2 halves = as_type<uint2>(ulong(number));
    out[2] = ((ulong(halves.y) << 32) | halves.x) == number ? 1.0 : 0.0;

    // A table in a buffer of places in two buffers.
    device Entry* table = (device Entry*)(scratch + 64);
    table[0] = {out + 3, 1};
    table[1] = {scratch + 8, 2};
    table[2] = {out + 4, 2};
    int one = int(in[1]);
    for (int i = 0; i < 3; i += one) {
        device Entry& entry = table[i];
        for (uint n = 0; n < entry.count; n++) entry.place[n] = in[3 + i / 2 + int(n)];
    }
    out[6] = scratch[8] + scratch[9] - (out[3] + out[4] + out[5]) + 12.0;

    // No table in a buffer: an array of more pointers than a choice can have.
    device float* places[40];
    for (int i = 0; i < 40; i++) places[i] = i % 2 ? scratch + i : out + 7 + i / 40;
    *places[one * 38] = 9.0;
    *places[one * 39] = 105.0;
    out[8] = scratch[39];
    thread float own[3] = {1.0, 2.0, 30.0};
    thread float* threads[20];
    for (int i = 0; i < 20; i++) threads[i] = own + i % 3;
    out[9] = *threads[one] + *threads[one * 3] + *threads[one * 5];
    for (int i = 0; i < 20; i++) *threads[i * one] += 1.0;
    out[10] = own[0] + own[1] + own[2] - 5.0;
}
