// user(name) joins members of two records by that name, whatever they are called and where they
// stand; what the fragment function does not ask for is left out (5.2.3.4).
// @draws triangle 3
// @pixel 1 6 : 3 20 10 0.5
#include <metal_stdlib>
using namespace metal;

struct Given {
    float4 at [[position]];
    float unused;
    float2 uv [[user(place)]];
    float depth [[user(locn3), flat]];
};
struct Taken {
    float level [[user(locn3)]] [[flat]];
    float2 texture_place [[user(place)]];
};

vertex Given corner(uint v [[vertex_id]]) {
    return {float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1), 9, float2(10, 20), 3};
}
fragment float4 joined(Taken in [[stage_in]], float4 at [[position]]) {
    return float4(in.level, in.texture_place.yx, at.y > 6.0 ? 0.5 : 0.0);
}
