// Values between the stages under every qualifier, on a triangle whose corners have different w:
// with perspective a value is linear in the scene, without it on the screen (5.4).
// @draws triangle 3
// @pixel 0 0 : 0.00402414 0.0625 7 1
// @pixel 5 1 : 0.06340057 0.6875 7 1
// @within 1e-4
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    float with;
    float without [[center_no_perspective]];
    float same [[flat]];
    float centre [[centroid_perspective]];
    float plain [[centroid_no_perspective]];
};

// w is 1 at the left corners and 16 at the right one.
vertex Corner corner(uint v [[vertex_id]]) {
    float x = v == 1 ? 3.0 : -1.0, y = v == 2 ? 3.0 : -1.0, w = v == 1 ? 16.0 : 1.0;
    float along = v == 1 ? 2.0 : 0.0;
    return {float4(x, y, 0.5, 1) * w, along, along, v == 0 ? 7.0f : -1.0f, along, along};
}
fragment float4 compared(Corner in [[stage_in]]) {
    bool same = abs(in.with - in.centre) < 1e-5 && abs(in.without - in.plain) < 1e-5;
    return float4(in.with, in.without, in.same, same);
}
