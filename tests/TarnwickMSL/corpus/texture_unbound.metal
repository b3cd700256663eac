// What nobody bound is zero and of no size, in every way of looking at it.
// @draws triangle 3
// @pixel 4 4 : 0 0 0 0
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 position [[position]];
    float2 uv;
};

vertex Corner corner(uint id [[vertex_id]]) {
    float2 p = float2((id << 1) & 2, id & 2);
    return {float4(p * 2 - 1, 0, 1), float2(p.x, 1 - p.y)};
}

fragment float4 colored(Corner in [[stage_in]], texture2d<float> a [[texture(0)]],
                        texture2d<uint> b [[texture(1)]], texture2d_array<float> c [[texture(2)]],
                        texture3d<float> d [[texture(3)]], texturecube<float> e [[texture(4)]],
                        texturecube_array<int> f [[texture(5)]], texture1d<half> g [[texture(6)]],
                        depth2d<float> h [[texture(7)]], depthcube<float> i [[texture(8)]],
                        texture2d<float, access::read_write> j [[texture(9)]]) {
    constexpr sampler s(filter::linear, mip_filter::linear), n, far(compare_func::greater);
    float3 direction = float3(in.uv - 0.5, 1);
    float4 sum = a.sample(s, in.uv) + float4(b.sample(n, in.uv)) + c.sample(s, in.uv, 1) +
                 d.sample(s, direction) + e.sample(s, direction) + float4(f.sample(n, direction, 0)) +
                 float4(g.sample(s, in.uv.x)) + h.sample(n, in.uv) + i.sample(n, direction);
    sum += a.sample(s, in.uv, bias(1)) + b.read(uint2(1)).x + e.gather(s, direction);
    sum.x += d.calculate_clamped_lod(s, direction) * 0 + a.calculate_clamped_lod(s, in.uv) * 0;
    uint size = b.get_width() + c.get_array_size() + d.get_depth() + e.get_num_mip_levels();
    j.write(float4(1), uint2(0));
    return float4(sum.x + sum.w, float(size) + j.read(uint2(0)).x,
                  h.sample_compare(far, in.uv, -1.0), i.sample_compare(far, direction, -1.0));
}
