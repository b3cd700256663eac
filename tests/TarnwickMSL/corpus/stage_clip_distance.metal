// Two clip distances: only where neither is negative is anything drawn; a fragment function reads
// them (5.2.3.3).
// @draws triangle 3
// @pixel 1 1 : 0 0 0 0
// @pixel 1 6 : 0 0 0 0
// @pixel 6 6 : 2.5 2.5 0 1
// @within 1e-4
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    float clip [[clip_distance]] [2];
};
struct Taken { float clip [[clip_distance]] [2]; };

vertex Corner corner(uint v [[vertex_id]]) {
    Corner c;
    float2 at = float2(v == 1 ? 24 : -8, v == 2 ? 24 : -8) / 8;
    c.at = float4(at.x, -at.y, 0, 1);
    c.clip[0] = at.x * 4;
    c.clip[1] = at.y * 4;
    return c;
}
fragment float4 inside(Taken in [[stage_in]]) { return float4(in.clip[0], in.clip[1], 0, 1); }
