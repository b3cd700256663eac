// Integers, bools and halves between the stages: small ones, negative ones, vectors, flat always (5.4).
// @draws triangle 3
// @pixel 4 4 : -5 200 65535 1
// @expects 1 0 1 | -300 7 | 4000000000 | 1.5 2.5
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    char small;
    uchar2 bytes;
    ushort most;
    bool yes;
    bool3 several;
    short2 pair [[flat]];
    uint large;
    half2 halves;
};

vertex Corner corner(uint v [[vertex_id]]) {
    Corner c;
    c.at = float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1);
    c.small = -5; c.bytes = uchar2(100, 200); c.most = 65535; c.yes = true;
    c.several = bool3(true, false, true);
    c.pair = short2(-300, 7);
    c.large = 4000000000u;
    c.halves = half2(1.5, 2.5);
    return c;
}
fragment float4 taken(Corner in [[stage_in]], device float* out [[buffer(0)]]) {
    out[0] = in.several.x; out[1] = in.several.y; out[2] = in.several.z;
    out[3] = in.pair.x; out[4] = in.pair.y;
    out[5] = in.large;
    out[6] = in.halves.x; out[7] = in.halves.y;
    return float4(in.small, in.bytes.y, in.most, in.yes);
}
