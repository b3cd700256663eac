// dfdx, dfdy and fwidth of scalars, vectors and halves (6.10.1.1).
// @draws triangle 3
// @pixel 4 2 : 3 2 5 1
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }
fragment float4 slopes(float4 at [[position]]) {
    float3 f = float3(3 * at.x, at.y, at.x * 3 - at.y * 2);
    half h = half(at.y * 2);
    return float4(dfdx(f).x, dfdy(h), fwidth(f).z, dfdy(f.xy).y);
}
