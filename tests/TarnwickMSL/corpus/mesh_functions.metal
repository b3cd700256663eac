// An object function, the mesh functions that it starts, and fragment functions that take the values
// of vertices and of primitives; no device here runs them, so the modules are only checked.
#include <metal_mesh>
#include <metal_stdlib>
using namespace metal;

struct Cluster {
    packed_float3 centre;
    float radius;
    ushort first, count;
    uchar detail;
    bool isLit;
};

struct Visible {
    uint clusters[32];
    half4 tint;
    float3x3 turn;
    ushort2 tile;
    uchar detail;
};

constant uint perGroup = 32;

[[object, max_total_threads_per_threadgroup(32), max_total_threadgroups_per_mesh_grid(1024)]]
void chooseClusters(object_data Visible& visible [[payload]], mesh_grid_properties grid,
                    device const Cluster* clusters [[buffer(0)]],
                    constant float4* planes [[buffer(1)]],
                    texture2d<float> depth [[texture(0)]],
                    uint index [[thread_position_in_grid]],
                    uint lane [[thread_index_in_threadgroup]],
                    uint3 group [[threadgroup_position_in_grid]],
                    uint threads [[threads_per_threadgroup]]) {
    threadgroup atomic_uint count;
    if (lane == 0)
        atomic_store_explicit(&count, 0, memory_order_relaxed);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    Cluster cluster = clusters[index];
    bool isVisible = depth.read(uint2(group.xy)).x < 1;
    for (uint i = 0; i < 6; i++)
        isVisible = isVisible && dot(planes[i].xyz, cluster.centre) + planes[i].w > -cluster.radius;
    if (isVisible)
        visible.clusters[atomic_fetch_add_explicit(&count, 1, memory_order_relaxed) % perGroup] = index;
    if (lane == 0) {
        visible.tint = half4(half3(cluster.centre), 1);
        visible.turn = float3x3(cluster.radius);
        visible.tile = ushort2(group.xy);
        visible.detail = cluster.isLit ? cluster.detail : 0;
    }
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_object_data);
    if (lane == threads - 1)
        grid.set_threadgroups_per_grid(
            uint3(atomic_load_explicit(&count, memory_order_relaxed), 1, visible.detail + 1));
}

struct Corner {
    float4 position [[position]];
    float3 normal;
    half2 uv [[user(coordinates)]];
    float distances[2] [[clip_distance]];
};

struct Face {
    uint id [[primitive_id]];
    bool isHidden [[primitive_culled]];
    half4 color;
    ushort material;
    float2 bounds[2];
};

typedef mesh<Corner, Face, 64, 126, topology::triangle> Mesh;

float3 place(object_data const Visible& visible, uint at) { return visible.turn * float3(at); }

void addCorner(Mesh out, uint at, object_data const Visible& visible) {
    Corner corner;
    corner.position = float4(place(visible, at), 1);
    corner.normal = float3(0, 0, at);
    corner.uv = half2(visible.tile);
    corner.distances[0] = corner.position.x;
    corner.distances[1] = 1;
    out.set_vertex(at, corner);
}

[[mesh, max_total_threads_per_threadgroup(128)]]
void drawClusters(Mesh out, object_data const Visible& visible [[payload]],
                  device const Cluster* clusters [[buffer(0)]],
                  device const uchar* indices [[buffer(2)]],
                  uint group [[threadgroup_position_in_grid]],
                  uint groups [[threadgroups_per_grid]],
                  uint lane [[thread_index_in_threadgroup]]) {
    Cluster cluster = clusters[visible.clusters[group % 32]];
    if (lane == 0)
        out.set_primitive_count(min(uint(cluster.count), Mesh::max_primitives));
    if (lane < Mesh::max_vertices)
        addCorner(out, lane, visible);
    if (lane >= cluster.count)
        return;
    for (uint i = 0; i < Mesh::indices_per_primitive; i++)
        out.set_index(3 * lane + i, indices[3 * (cluster.first + lane) + i]);
    Face face;
    face.id = groups * 126 + lane;
    face.isHidden = (lane & 1) != 0;
    face.color = visible.tint;
    face.material = cluster.detail;
    face.bounds[0] = face.bounds[1] = float2(lane);
    out.set_primitive(lane, face);
}

// Without an object function; one thread writes four indices at once.
[[mesh]] void drawQuads(uint lane [[thread_position_in_threadgroup]], uint quad [[thread_position_in_grid]],
                        constant float4x4& camera [[buffer(0)]],
                        mesh<Corner, Face, 256, 512, metal::topology::triangle> out) {
    out.set_primitive_count(4);
    for (uint i = 0; i < 4; i++)
        out.set_vertex(4 * lane + i, {camera * float4(i & 1, i >> 1, quad, 1), float3(0), half2(0), {0, 1}});
    uchar first = uchar(4 * lane);
    out.set_indices(12 * lane, uchar4(first, first + 1, first + 2, first + 2));
    out.set_indices(12 * lane + 4, uchar2(first + 1, first + 3));
    out.set_primitive(2 * lane, {.color = 1, .material = 3});
    out.set_primitive(2 * lane + 1, Face{});
}

struct Shaded {
    Corner corner;
    Face face;
};

[[fragment]] float4 shade(Shaded in [[stage_in]]) {
    if (in.face.isHidden)
        return 0;
    return float4(in.face.color) * in.corner.normal.z + in.face.bounds[1].x + in.face.material +
           float(in.corner.uv.x) + in.face.id + in.corner.position.x;
}

// The members by name, without the records.
struct Plain {
    half4 color;
    float3 normal;
    half2 texel [[user(coordinates)]];
};
fragment float4 shadePlainly(Plain in [[stage_in]]) {
    return float4(in.color) * in.normal.x + float(in.texel.y);
}
