// Copies and fills of hundreds of words are loops over words, which are elements of no member's array.
// @expects 10 28 20 0
#include <metal_stdlib>
using namespace metal;

struct Row { uint numbers[4]; ushort pair[2]; float last; };
struct Rows { Row list[40]; };
constant Rows table = {{{{1, 2, 3, 4}, {5, 6}, 7.0f}, {{8, 9, 10, 11}, {12, 13}, 14.0f},
                        {{15, 16, 17, 18}, {19, 20}, 21.0f}, {{22, 23, 24, 25}, {26, 27}, 28.0f}}};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uint one = uint(in[1]), two = uint(in[2]), three = uint(in[3]);
    Rows rows = table;
    rows.list[three * 12].numbers[one] += uint(in[0]);
    out[0] = rows.list[one].numbers[two];
    out[1] = rows.list[three].last;
    out[2] = rows.list[two].pair[one];
    out[3] = rows.list[three * 12].numbers[one];
}
