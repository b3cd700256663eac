// A fragment function gives the depth; the nearer of two triangles stays whatever their order (5.2.3.5).
// @draws triangle 3 2 depth
// @pixel 0 0 : 0 0.25 0 1
// @pixel 6 0 : 1 0.5 0 1
#include <metal_stdlib>
using namespace metal;

struct Corner { float4 at [[position]]; uint instance; };
struct Seen { float4 colour [[color(0)]]; float depth [[depth(any)]]; };

vertex Corner corner(uint v [[vertex_id]], uint i [[instance_id]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0.9, 1), i};
}
fragment Seen seen(Corner in [[stage_in]]) {
    float depth = in.instance == 1 ? 0.5 : in.at.x < 4 ? 0.25 : 0.75;
    return {float4(in.instance, depth, 0, 1), depth};
}
