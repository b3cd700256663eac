// Meshes of points and lines, payloads behind pointers, and all positions of threads in object and
// mesh functions; no device here runs them, so the modules are only checked.
#include <metal_stdlib>
using namespace metal;

struct Dot {
    float4 position [[position]];
    int2 cell [[flat]];
};

struct Layered {
    uint layer [[render_target_array_index]];
    uint viewport [[viewport_array_index]];
    bool isCulled [[primitive_culled]];
};

// Points without a size have the size 1.
[[mesh]] void dots(mesh<Dot, void, 32, 32, topology::point> out, device const float4* at [[buffer(0)]],
                   uint count [[threads_per_threadgroup]], uint lane [[thread_index_in_simdgroup]],
                   uint simd [[simdgroup_index_in_threadgroup]], uint width [[threads_per_simdgroup]]) {
    uint i = simd * width + lane;
    out.set_vertex(i, {at[i], int2(at[i].xy)});
    out.set_index(i, uchar(i));
    out.set_primitive_count(simd_sum(1u) * (count / width));
}

struct SizedDot {
    float4 position [[position]];
    float size [[point_size]];
    float clip [[clip_distance]];
};

struct Tones { half3 color; };

[[mesh]] void sizedDots(mesh<SizedDot, Tones, 4, 4, topology::point> out,
                        object_data const uchar* sizes [[payload]],
                        ushort3 at [[thread_position_in_threadgroup]],
                        uint3 whole [[threads_per_grid]]) {
    out.set_vertex(at.x, {float4(float3(at), 1), float(sizes[at.x]), float(whole.y)});
    out.set_primitive(at.x, {half3(sizes[at.y])});
    out.set_index(at.x, at.x);
    if (at.x == 0)
        out.set_primitive_count(sizes[4] > 2 ? 4 : 2);
}

[[object]] void chooseSizes(object_data uchar* sizes [[payload]], mesh_grid_properties grid,
                            ushort2 at [[thread_position_in_threadgroup]],
                            uint3 threads [[dispatch_threads_per_threadgroup]],
                            uint2 groups [[threadgroups_per_grid]], uint index [[thread_position_in_grid]],
                            uint quads [[quadgroups_per_threadgroup]],
                            threadgroup uint* shared [[threadgroup(0)]]) {
    shared[at.x] = index;
    threadgroup_barrier(mem_flags::mem_threadgroup);
    sizes[at.x] = uchar(shared[3 - at.x] + at.y);
    sizes[4] = uchar(threads.x + quads);
    for (uint i = 0; i < index; i++)
        if (shared[i] == 7)
            return;
    grid.set_threadgroups_per_grid(uint3(groups, 1));
}

// An object function that starts nothing.
[[object]] void nothing(uint index [[thread_index_in_threadgroup]], device uint* out [[buffer(0)]]) {
    out[index] = index;
}

template <uint sides> void ring(mesh<Dot, Layered, sides, sides, topology::line> out, uint lane) {
    float angle = 6.2831853f * lane / sides;
    out.set_vertex(lane, {float4(cos(angle), sin(angle), 0, 1), int2(lane)});
    out.set_indices(2 * lane, uchar2(lane, (lane + 1) % sides));
    out.set_primitive(lane, {lane % 4, lane % 2, lane == 3});
}

[[mesh, max_total_threads_per_threadgroup(12)]]
void rings(mesh<Dot, Layered, 12, 12, topology::line> out, uint lane [[thread_index_in_threadgroup]]) {
    ring<12>(out, lane);
    simdgroup_barrier(mem_flags::mem_threadgroup);
    out.set_primitive_count(12);
}

// Loops without a known end stop at the budget.
[[mesh]] void spirals(mesh<Dot, void, 64, 63, topology::line> out, device const float* steps [[buffer(0)]],
                      uint lane [[thread_index_in_threadgroup]]) {
    float angle = 0;
    for (uint i = 0; steps[i] > 0; i++)
        angle += steps[i];
    if (angle > lane)
        out.set_vertex(lane, {float4(angle, 0, 0, 1), 0});
    out.set_indices(2 * lane, uchar2(lane, lane + 1));
    out.set_primitive_count(63);
}

fragment float4 paint(Dot in [[stage_in]], uint layer [[render_target_array_index]]) {
    return float4(float2(in.cell), in.position.x, layer);
}

struct ToneOfDot { SizedDot dot; Tones tones; };
fragment half4 paintTones(ToneOfDot in [[stage_in]]) { return half4(in.tones.color, 1); }
