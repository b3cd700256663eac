// base_vertex and base_instance beside vertex_id and instance_id, as ushort too (5.2.3.1).
// @draws triangle 3 2
// @pixel 3 3 : 0 0 1 2
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; float4 ids [[flat]]; };

vertex Corner corner(uint v [[vertex_id]], ushort i [[instance_id]], uint baseV [[base_vertex]],
                     uint baseI [[base_instance]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1), float4(baseV, baseI, i, v + 2)};
}
fragment float4 ids(Corner in [[stage_in]]) { return in.ids; }
