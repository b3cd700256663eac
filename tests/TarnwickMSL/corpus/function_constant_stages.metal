// Members of stage records that exist for some values of function constants alone (5.8.1); the
// attribute that is absent needs no buffer.
// @constant hasColour true
// @constant hasShade false
// @attribute 0 float2 0 1
// @layout 1 8 vertex
// @draws triangle 3
// @pixel 1 6 : 0.5 0.25 1 1
#include <metal_stdlib>
using namespace metal;

constant bool hasColour [[function_constant(0)]];
constant bool hasShade [[function_constant(1)]];

struct Corner {
    float4 position [[position]];
    float3 colour [[function_constant(hasColour)]];
    float shade [[user(shade), function_constant(hasShade)]];
};

struct Given {
    float2 at [[attribute(0)]];
    float shade [[attribute(1), function_constant(hasShade)]];
};

vertex Corner corner(Given given [[stage_in]], uint id [[vertex_id]]) {
    Corner made;
    made.position = float4(id == 1 ? 3 : -1, id == 2 ? 3 : -1, 0, 1);
    if (hasColour) made.colour = float3(0.5, 0.25, given.at.y - given.at.x);
    if (hasShade) made.shade = given.shade;
    return made;
}

struct Painted {
    float4 colour [[color(0)]];
    float4 second [[color(1), function_constant(hasShade)]];
    float depth [[depth(any), function_constant(hasShade)]];
};

fragment Painted paint(Corner in [[stage_in]]) {
    Painted made;
    made.colour = float4(hasColour ? in.colour : float3(0), 1);
    if (hasShade) {
        made.colour *= in.shade;
        made.second = float4(1);
        made.depth = 0.5;
    }
    return made;
}
