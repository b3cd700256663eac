// Vertex amplification: a pass of one view has the view 0 of 1 (5.2.3.1, 5.2.3.4).
// @draws triangle 3
// @pixel 4 4 : 0 1 0 1
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    uint view [[flat]];
    uint views [[flat]];
};

vertex Corner corner(uint v [[vertex_id]], ushort view [[amplification_id]], uint views [[amplification_count]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1), view, views};
}
fragment float4 views(Corner in [[stage_in]], uint view [[amplification_id]], ushort views [[amplification_count]]) {
    return float4(in.view, in.views, view, views);
}
