// A store to one of two elements of an array behind a vector, which LLVM makes a choice of words, and
// a load of one of two half vectors, whose words may be in different vectors.
// @expects 9 | 0 | 7 | 2 | 0 0 | 1 3
#include <metal_stdlib>
using namespace metal;

struct Slots {
    uint3 head;
    half weight;
    half level;
    uint slots[4];
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uint h = uint(in[1]) * 7u;
    Slots record = {uint3(h), half(1.0f), half(2.0f)};
    for (uint i = 0u; i < 4u; i++) {
        switch (record.slots[h & 3u] % 6u) {
        case 0:
            record.slots[(h & 4u) != 0u ? 1u : 0u] = 9u;
            break;
        case 4:
            h += uint(record.level);
        }
    }
    out[0] = float(record.slots[h & 1u]), out[1] = float(record.slots[h & 2u]);
    out[2] = float(record.head.z), out[3] = float(record.level);
    uint bits = uint(in[1]);
    half4 whole = half4(half(bits & 7u), 1.0h, 2.0h, 3.0h);
    half4 vectors[3] = {abs(whole)};
    whole = vectors[(bits & 4u) != 0u ? 0u : 2u];
    out[4] = whole.x, out[5] = whole.w;
    whole = vectors[(bits & 1u) != 0u ? 0u : 2u];
    out[6] = whole.x, out[7] = whole.w;
}
