// Bytes, halves and booleans in threadgroup memory, each written by a thread of its own.
// @runs check 32 32
// @expects 31 15.5 16 | 1
#include <metal_stdlib>
using namespace metal;

struct Small { uchar byte; bool isOdd; half value; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], uint i [[thread_index_in_threadgroup]]) {
    threadgroup uchar bytes[32];
    threadgroup Small small[32];
    threadgroup char3 triples[32];
    bytes[i] = uchar(i); triples[i] = char3(i);
    small[i].byte = uchar(i); small[i].isOdd = i % 2 == 1; small[i].value = half(i) / 2.0h;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    uint odd = 0, wrong = 0;
    for (uint j = 0; j < 32; j++) {
        odd += small[j].isOdd ? 1 : 0;
        wrong += (bytes[j] != j || triples[j].y != char(j) || small[j].byte != j) ? 1 : 0;
    }
    if (i == 7) { out[0] = float(small[31].byte); out[1] = float(small[31].value); out[2] = float(odd); out[3] = wrong == 0 ? 1.0 : 0.0; }
}
