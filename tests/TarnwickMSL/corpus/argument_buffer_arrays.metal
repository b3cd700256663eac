// Arrays of argument buffers: textures, samplers and pointers of records with a known or a bounded
// index, pointers and constants of records with any index, and pointers that a kernel writes into a record.
#include <metal_stdlib>
using namespace metal;

struct Layer {
    texture2d<float> picture [[id(0)]];
    sampler filter [[id(1)]];
    device float* values [[id(2)]];
    array<texture2d<float>, 2> details [[id(3)]];
    float strength [[id(5)]];
};
struct Link {
    device Link* next [[id(0)]];
    device float* value [[id(1)]];
};

kernel void blend(device float* out [[buffer(0)]], constant Layer* layers [[buffer(1)]],
                  constant array<Layer, 3>& known [[buffer(2)]], uint i [[thread_position_in_grid]]) {
    float4 colour = 0.0;
    for (int n = 0; n < 3; n++)
        colour += layers[n].picture.sample(layers[n].filter, float2(0.5)) * layers[n].strength;
    colour += layers[2].details[i & 1].sample(layers[0].filter, float2(0.5));
    colour += layers[min(i, 4u)].details[i & 1].sample(layers[i & 7].filter, float2(0.25));
    colour += known[i % 3].picture.sample(known[1].filter, float2(0.5));
    out[i] = colour.x + layers[i].values[i] + layers[1].values[i] + layers[i].strength;
}
kernel void link(device Link* links [[buffer(0)]], device float* values [[buffer(1)]],
                 uint i [[thread_position_in_grid]]) {
    links[i].value = values + i;
    links[i].next = i > 0 ? links + (i - 1) : nullptr;
    if (links[i].next) *links[i].next->value = 1.0;
}
