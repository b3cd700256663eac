// Colours so far as arguments and members of stage_in, of every kind and width; the second draw sees
// what the first one gave.
// @draws triangle 3 twice
// @target 1 int
// @target 2 half
// @target 4 ushort
// @pixel 0 0 : 4 3 2 2
// @pixel 5 3 : 4 3 2 2
// @pixel 5 3 1 : -8 -2 -2 -2
// @pixel 5 3 2 : 1.5 2 0.5 1
// @pixel 5 3 4 : 6 5 0 3
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; float one; };
struct Inputs { float one; half2 third [[color(2)]]; };
struct Results {
    float4 first [[color(0)]];
    int4 second [[color(1)]];
    half4 third [[color(2)]];
    ushort4 fifth [[color(4)]];
};

vertex Corner corner(uint v [[vertex_id]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1), 1};
}
fragment Results shade(Inputs in [[stage_in]], float4 first [[color(0)]], int second [[color(1)]],
                       ushort4 fifth [[color(4)]]) {
    Results results;
    results.first = first + float4(2, 1.5, 1, in.one);
    results.second = int4(second * 3 - 2, -2, -2, -2);
    results.third = half4(in.third.x + 0.75h, in.third.y * 2 + half(first.x), 0.5h, 1);
    results.fifth = ushort4(fifth.x + 3, 5, fifth.z, fifth.w * 2 + 1);
    if (first.x > 100)
        discard_fragment();
    return results;
}
