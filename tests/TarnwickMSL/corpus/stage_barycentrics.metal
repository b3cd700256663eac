// barycentric_coord, with and without perspective, in one to three dimensions (5.2.3.4). The packaged
// CPU driver does not have it.
#include <metal_stdlib>
using namespace metal;

struct Weights {
    float3 all [[barycentric_coord, centroid_perspective]];
    float2 linear [[barycentric_coord, center_no_perspective]];
};

fragment float4 weights(float3 all [[barycentric_coord]], float2 linear [[barycentric_coord, center_no_perspective]]) {
    return float4(all, linear.y);
}
fragment float4 member(Weights in [[stage_in]], float first [[barycentric_coord, centroid_perspective]]) {
    return float4(in.all, in.linear.x + first);
}
