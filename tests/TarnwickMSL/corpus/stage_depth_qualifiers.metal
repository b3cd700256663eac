// depth(less) and depth(greater) promise which way depth goes; its type stays float (5.2.3.5).
// @draws triangle 3 1 depth
// @pixel 2 2 : 0.125 0 0 1
#include <metal_stdlib>
using namespace metal;

struct Nearer { half4 colour [[color(0)]]; float depth [[depth(less)]]; };
struct Farther { float depth [[depth(greater)]]; };

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0.5, 1); }
fragment Nearer nearer(float4 at [[position]]) { return {half4(at.z / 4, 0, 0, 1), at.z / 4}; }
fragment Farther farther(float4 at [[position]]) { return {at.z + 0.25}; }
