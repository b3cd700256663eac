// Attributes of vertices and instances, of other formats than their types: more and fewer
// components, normalized and signed integers, halves (5.2.2, 5.2.4).
// @attribute 0 float2 0 0
// @attribute 1 uchar4Normalized 8 0
// @attribute 4 short2 12 0
// @attribute 5 half4 16 0
// @attribute 7 float2 0 2
// @attribute 8 uint 8 2
// @layout 0 24 vertex
// @layout 2 16 instance
// @runs fill 6 6
// @draws triangle 6 2
// @pixel 1 1 : 1 0.2 -3 1
// @pixel 2 6 : 1 0.2 -3 1
// @pixel 5 1 : 6.75 1.4 5 1
// @pixel 6 6 : 6.75 1.4 5 1
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

struct Stored {
    float2 at;
    uchar4 tint;
    short2 shift;
    half4 level;
};
struct Move {
    float2 by;
    uint number;
    uint unused;
};

kernel void fill(device Stored* vertices [[buffer(0)]], device Move* moves [[buffer(2)]],
                 uint i [[thread_position_in_grid]]) {
    const bool isRight = i == 1 || i == 2 || i == 4, isLower = i == 2 || i == 4 || i == 5;
    vertices[i].at = float2(isRight ? 0 : -1, isLower ? -1 : 1);
    vertices[i].tint = uchar4(255, 51, 0, 102);
    vertices[i].shift = short2(-3, 4);
    vertices[i].level = half4(0.5h, 0.25h, 2.0h, 1.0h);
    if (i < 2)
        moves[i] = {float2(i, 0), i * 5, 0};
}

struct Common {
    packed_float2 at [[attribute(0)]];
    half4 tint [[attribute(1)]];
};
struct In : Common {
    int2 shift [[attribute(4)]];
    float3 level [[attribute(5)]];
    float4 move [[attribute(7), user(ignored_here)]];
    ushort number [[attribute(8)]];
    float unread [[attribute(30)]]; // not in the vertex descriptor, and not used
};
struct Out {
    float4 at [[position]];
    float4 colour;
};

// The buffers of attributes and of arguments have the same indices.
vertex Out place(In in [[stage_in]], constant float* numbers [[buffer(1)]],
                 uint instance [[instance_id]]) {
    Out out;
    out.at = float4(float2(in.at) + in.move.xy, in.move.z, in.move.w);
    out.colour = instance == 0
                     ? float4(in.tint.r, in.tint.g, in.shift.x, 1)
                     : float4(numbers[in.shift.y] + in.level.x + in.level.y + in.level.z,
                              in.tint.a + in.tint.r, in.number, 1);
    return out;
}
fragment float4 paint(Out in [[stage_in]]) { return in.colour; }
