// Ray queries and intersectors of every kind; no device runs them, so the modules are only checked.
#include <metal_raytracing>
#include <metal_stdlib>
using namespace metal;
using namespace metal::raytracing;

kernel void nearest(instance_acceleration_structure scene [[buffer(0)]],
                    device float4* out [[buffer(1)]], constant float3& eye [[buffer(2)]],
                    uint2 at [[thread_position_in_grid]]) {
    ray r(eye, normalize(float3(float2(at) / 8 - 1, 1)), 0.01f, 100);
    intersector<triangle_data, instancing> finder;
    finder.set_triangle_cull_mode(triangle_cull_mode::back);
    finder.force_opacity(forced_opacity::opaque);
    finder.accept_any_intersection(at.x == 0);
    auto hit = finder.intersect(r, scene, 0xf);
    if (hit.type == intersection_type::none)
        return;
    out[at.y * 8 + at.x] = float4(hit.distance, hit.triangle_barycentric_coord,
                                  float(hit.primitive_id + hit.geometry_id + hit.instance_id));
}

// Boxes that the kernel itself intersects; two queries at once.
kernel void boxes(acceleration_structure<instancing> scene [[buffer(0)]],
                  acceleration_structure<instancing> lights [[buffer(3)]],
                  device float* out [[buffer(1)]], uint at [[thread_position_in_grid]]) {
    intersection_params how;
    how.set_geometry_cull_mode(geometry_cull_mode::triangle);
    intersection_query<instancing, triangle_data> query(ray(float3(0), float3(0, 0, 1)), scene, how);
    while (query.next()) {
        if (query.get_candidate_intersection_type() != intersection_type::bounding_box) {
            query.commit_triangle_intersection();
            continue;
        }
        float3 from = query.get_candidate_ray_origin(), to = query.get_candidate_ray_direction();
        float4x3 placed = query.get_candidate_object_to_world_transform();
        if (query.is_candidate_non_opaque_bounding_box() && dot(from, to) < placed[3].x)
            query.commit_bounding_box_intersection(length(from));
        if (query.get_candidate_user_instance_id() == 7)
            query.abort();
    }
    intersection_query<instancing, triangle_data> shadow;
    for (int round = 0; round < 2; round++) {
        shadow.reset(ray(query.get_world_space_ray_origin(), float3(0, 1, float(round))), lights, 3);
        shadow.next();
        out[2 * at + round] = shadow.get_committed_distance() + query.get_ray_min_distance();
    }
    if (query.get_committed_intersection_type() == intersection_type::triangle &&
        query.is_committed_triangle_front_facing())
        out[2 * at] += query.get_committed_world_to_object_transform()[0].y +
                       query.get_committed_triangle_barycentric_coord().x;
}

fragment float4 lit(float4 at [[position]],
                    raytracing::acceleration_structure<raytracing::instancing> scene [[buffer(0)]]) {
    intersection_query<instancing, triangle_data> query;
    query.reset(ray(float3(at.xy, 0), float3(0, 0, 1), 0.001f, 2.0f), scene, intersection_params());
    while (query.next())
        ;
    if (uint(query.get_committed_intersection_type()) == 0u)
        discard_fragment();
    return float4(query.get_committed_distance());
}
