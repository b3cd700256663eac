// Indices of buffers and colours by names: constants, enumerators, macros, names in namespaces, sums (5.2.1).
// @expects 3 7 | 11 | 31
#include <metal_stdlib>
using namespace metal;

enum Slot { slotOut, slotIn, slotScratch };
namespace slots {
constant int scratch = 2;
}
constexpr constant int one = 1;
#define SLOT_OUT 0

kernel void check(device uint* words [[buffer(slotScratch)]], device float* results [[buffer(slotOut)]],
                  constant float* numbers [[buffer(slotIn)]]) {
    results[0] = numbers[3]; results[1] = numbers[7];
    words[5] = 11;
    results[2] = words[5];
    results[3] = numbers[31];
}
kernel void others(constant float* numbers [[buffer(one)]], device uint* words [[buffer(slots::scratch)]],
                   device float* results [[buffer(SLOT_OUT)]], device float* more [[buffer(one + 2)]]) {
    results[0] = more[0] = numbers[words[0]];
}
struct Colours {
    float4 first [[color(SLOT_OUT)]];
    float4 second [[color(one)]];
};
fragment Colours colours(float4 at [[position]]) { return {at, 1}; }
