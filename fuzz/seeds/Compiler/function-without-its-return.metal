// @target isOptimised
#include <metal_stdlib>
using namespace metal;
static uint bump(thread uint& value, uint by) {
}
static uint counted(uint h, float x) {
    uint count = 1;
    while (x >= -1 && bump(h, h) != 1 && count++ < 1) {
        x += 1;
    }
    return h;
}
kernel void check(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    i = counted(1, 4);
}
