// Entry points of each stage with what they may take and give.
#include <metal_stdlib>
using namespace metal;

struct VertexIn { float3 position; half4 colour; };
struct Varyings {
    float4 position [[position]];
    float size [[point_size]];
    float3 plain;
    half2 narrow;
    uint id [[flat]];
    float linear [[center_no_perspective]];
    float4 named [[user(colour)]];
    float centroid [[centroid_perspective]];
};
struct Targets {
    float4 first [[color(0)]];
    half4 second [[color(1)]];
    float depth [[depth(any)]];
};
enum Slots { slotUniforms = 3 };
struct Uniforms { float4x4 matrix; float3 light; float time; };

vertex Varyings fromVertices(constant VertexIn* vertices [[buffer(0)]], uint id [[vertex_id]], uint instance [[instance_id]],
                             constant Uniforms& u [[buffer(slotUniforms)]]) {
    VertexIn in = vertices[id];
    Varyings o = {};
    o.position = u.matrix * float4(in.position, 1);
    o.size = 4;
    o.plain = in.position;
    o.named = float4(in.colour);
    o.id = id + instance;
    return o;
}
fragment Targets toTargets(Varyings in [[stage_in]], bool front [[front_facing]], float2 pc [[point_coord]],
                           constant Uniforms& u [[buffer(slotUniforms)]]) {
    Targets t;
    t.first = float4(in.plain * u.light, front ? 1 : 0) + in.named;
    t.second = half4(half2(pc), in.narrow);
    t.depth = in.position.z * 0.5;
    if (in.id == 7) discard_fragment();
    return t;
}
[[early_fragment_tests]] fragment half4 plain() { return half4(1, 0, 0, 1); }
fragment void nothing(float4 at [[position]], device uint* counts [[buffer(0)]]) { counts[uint(at.x)] = 1; }
vertex float4 bare(uint id [[vertex_id]]) { return float4(float(id)); }
kernel void summed(device const float* in [[buffer(0)]], device float* out [[buffer(1)]],
                   uint at [[thread_position_in_grid]], uint local [[thread_position_in_threadgroup]],
                   uint group [[threadgroup_position_in_grid]], uint size [[threads_per_threadgroup]]) {
    threadgroup float shared[64];
    shared[local] = in[at];
    threadgroup_barrier(mem_flags::mem_threadgroup);
    for (uint stride = 32; stride > 0; stride /= 2) {
        if (local < stride) shared[local] += shared[local + stride];
        threadgroup_barrier(mem_flags::mem_threadgroup);
    }
    if (local == 0) out[group] = shared[0] + float(size);
}
