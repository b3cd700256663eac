// Argument buffers: textures, samplers, pointers and constants, arrays of them by constant and by
// changing indices, nested records, records without ids, arrays of textures as the whole buffer.
#include <metal_stdlib>
using namespace metal;

struct Light { float3 colour; float power; };
struct Layer {
    texture2d<float> picture [[id(0)]];
    sampler filter [[id(1)]];
};
struct Material {
    Layer base [[id(0)]];
    array<texture2d<float>, 4> details [[id(4)]];
    array<sampler, 2> filters [[id(8)]];
    constant Light* lights [[id(12)]];
    device atomic_uint* count [[id(13)]];
    device const float4* tables[3] [[id(14)]];
    texture2d<float, access::write> target [[id(20)]];
    depth2d<float> shadow [[id(21)]];
    float4 tint [[id(22)]];
    int steps;
};
struct Plain {
    texturecube<float> sky;
    sampler filter;
    float exposure;
};
struct In { float4 position [[position]]; float2 uv; };

static float4 layer(constant Layer& layer, float2 uv) { return layer.picture.sample(layer.filter, uv); }
static float4 entry(device const float4* constant (&tables)[3], int i) { return tables[i % 3][i]; }

fragment float4 shade(In in [[stage_in]], constant Material& material [[buffer(0)]],
                      constant Plain& plain [[buffer(1)]]) {
    float4 colour = layer(material.base, in.uv) * material.tint;
    for (int i = 0; i < material.steps; i++)
        colour += material.details[i % 4].sample(material.filters[i & 1], in.uv) *
                  entry(material.tables, i);
    colour.rgb += material.lights[1].colour * material.lights->power;
    colour += plain.sky.sample(plain.filter, float3(in.uv, 1.0)) * plain.exposure;
    return colour + material.shadow.sample(material.filters[1], in.uv);
}

kernel void count(device const Material* material [[buffer(3)]],
                  constant array<texture2d<float>, 3>& pictures [[buffer(4)]],
                  uint2 at [[thread_position_in_grid]]) {
    atomic_fetch_add_explicit(material->count, 1u, memory_order_relaxed);
    texture2d<float> chosen = pictures[at.x % 3];
    material->target.write(chosen.read(at % chosen.get_width()), at);
}
