// Every way to sample, read and measure a texture, and every sampler.
#include <metal_stdlib>
using namespace metal;

constexpr sampler shared(coord::pixel, address::repeat, filter::nearest);
constant sampler other = sampler(filter::linear, mip_filter::linear, lod_clamp(0.5, 4.0));

struct In {
    float4 position [[position]];
    float2 uv;
};

struct Pictures {
    texture2d<float> first;
    texture2d<half> second;
    float4 at(float2 uv) const {
        constexpr sampler s(filter::linear, address::clamp_to_edge);
        return first.sample(s, uv) + float4(second.sample(s, uv));
    }
};

float4 blended(texture2d<float> t, sampler s, float2 uv) { return t.sample(s, uv); }

fragment float4 sampled(In in [[stage_in]], texture2d<float> a [[texture(0)]],
                        texture2d<half> b [[texture(1)]], texture2d<uint> c [[texture(2)]],
                        texture2d<int> d [[texture(3)]],
                        texture2d<float, access::read> e [[texture(4)]],
                        sampler given [[sampler(0)]]) {
    constexpr sampler clamped(address::clamp_to_zero, filter::linear);
    constexpr sampler mirrored(s_address::mirrored_repeat, t_address::clamp_to_border,
                               border_color::opaque_white, mag_filter::linear,
                               min_filter::nearest, max_anisotropy(8), compare_func::less);
    float4 sum = a.sample(clamped, in.uv) + a.sample(mirrored, in.uv, level(2.0));
    sum += a.sample(shared, in.position.xy, bias(-0.5)) + a.sample(other, in.uv, int2(1, -2));
    sum += a.sample(given, in.uv, gradient2d(dfdx(in.uv), dfdy(in.uv)), int2(0, 1));
    sum += float4(b.sample(given, in.uv)) + blended(a, given, in.uv) + blended(a, clamped, in.uv);
    uint2 size = uint2(a.get_width(), a.get_height(1));
    sum += a.read(uint2(in.position.xy) % size, 0) + e.read(uint2(1, 2));
    sum += float4(c.read(ushort2(3, 4))) + float4(d.read(uint2(0)));
    sum.x += float(a.get_num_mip_levels()) + a.gather(given, in.uv).w;
    sum += Pictures{a, b}.at(in.uv);
    return sum;
}

kernel void written(texture2d<float, access::write> to [[texture(0)]],
                    texture2d<uint, access::read_write> both [[texture(1)]],
                    uint2 at [[thread_position_in_grid]]) {
    if (at.x >= to.get_width() || at.y >= to.get_height())
        return;
    to.write(float4(float2(at), 0, 1), at);
    both.write(both.read(at) + 1u, at);
}
