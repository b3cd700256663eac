// Sparse reads and samples: every texture of the platform has all of its memory.
// @texture 0 2d float 6x4 1 2
// @texture 1 2d_array int 4x4 2
// @texture 2 depth 4x4
// @texture 3 3d float 4x4x4
// @texture 2 2d depth 4x4
// @draws triangle 3
// @pixel 0 0 : 12 1 2011 1
// @pixel 7 7 : 112 1 1 23
#include <metal_stdlib>
using namespace metal;

vertex float4 corner(uint v [[vertex_id]]) { return float4(v == 1 ? 3 : -1, v == 2 ? 3 : -1, 0, 1); }

fragment float4 shade(float4 at [[position]], texture2d<float> flat [[texture(0)]],
                      texture2d_array<int, access::read> layers [[texture(1)]],
                      depth2d<float> depth [[texture(2)]], texture3d<float> solid [[texture(3)]]) {
    constexpr sampler near(coord::normalized, filter::nearest, mip_filter::nearest);
    constexpr sampler less(coord::normalized, filter::nearest, compare_func::less);
    if (at.x < 4) {
        sparse_color<float4> read = flat.sparse_read(uint2(1, 1));
        sparse_color<float4> small = flat.sparse_sample(near, float2(0.2, 0.6), level(1));
        sparse_color<float4> clamped = flat.sparse_sample(near, float2(0.2, 0.6), min_lod_clamp(1));
        bool isAll = read.resident() && small.resident() && clamped.resident();
        return float4(read.value().x, isAll, clamped.value().x, small.value().x == clamped.value().x);
    }
    sparse_color<int4> layer = layers.sparse_read(uint2(1, 1), 1);
    sparse_color<float> lit = depth.sparse_sample_compare(less, float2(0.5), 0.0f);
    sparse_color<float4> four = depth.sparse_gather_compare(less, float2(0.5), 0.0f);
    sparse_color<float4> inside = solid.sparse_sample(near, float3(0.6, 0.6, 0), level(0));
    sparse_color<float4> gathered = flat.sparse_gather(near, float2(0.5), int2(0), component::y);
    bool isResident = layer.resident() && lit.resident() && gathered.resident();
    return float4(layer.value().x, lit.value() * four.value().y, isResident, inside.value().x);
}
