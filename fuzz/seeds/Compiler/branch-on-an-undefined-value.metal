// @target isOptimised
#include <metal_stdlib>
#include <metal_raytracing>
using namespace metal;
using namespace metal::raytracing;
kernel void boxes(acceleration_structure<instancing> scene [[buffer(0)]],
                  acceleration_structure<instancing> lights [[buffer(3)]],
                  device float* out [[buffer(1)]], uint at [[thread_position_in_grid]]) {
    intersection_query<instancing, triangle_data> query(1, scene, 1);
    while (1) {
        float3 from = 1, to = query.get_candidate_ray_direction();
        float4x3 placed = query.get_candidate_object_to_world_transform();
        if (query.is_candidate_non_opaque_bounding_box() && dot(1, to) < placed[60001].x)
            query.commit_bounding_box_intersection(1);
    }
}
