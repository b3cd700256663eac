// The layer and the viewport that a vertex function chooses; layer and viewport 0 are the picture (5.10).
// @draws triangle 3
// @pixel 5 5 : 0 0 1 1
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    uint layer [[render_target_array_index]];
    ushort viewport [[viewport_array_index]];
};

vertex Corner corner(uint v [[vertex_id]], constant uint* in [[buffer(1)]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1), in[0], ushort(in[0])};
}
fragment float4 layer(Corner in [[stage_in]]) { return float4(in.layer, in.viewport, 1, 1); }
