// Triangle patches after tessellation: control points, values of a patch, its number, and the
// factors that a kernel writes (5.1.1, 5.2.3.3, 5.2.4).
// @attribute 0 float2 0 0
// @attribute 1 half2 8 0
// @attribute 3 float 16 2
// @layout 0 16 control_point
// @layout 2 4 patch
// @runs fill 6
// @draws patches 2 3
// @pixel 1 1 : 0.625 0.1875 0.1875 3.5
// @pixel 5 6 : 0.1875 0.5 0.3125 19.25
// @within 1e-3
#include <metal_stdlib>
#include <metal_tessellation>
using namespace metal;

struct Stored {
    float2 at;
    half2 number;
    uint unused;
};

kernel void fill(device Stored* points [[buffer(0)]],
                 device MTLTriangleTessellationFactorsHalf* factors [[buffer(2)]],
                 uint i [[thread_position_in_grid]]) {
    const float2 corners[6] = {{-1, 1}, {1, 1}, {-1, -1}, {1, 1}, {1, -1}, {-1, -1}};
    points[i] = {corners[i], half2(i, 0.5h), 0};
    if (i < 2) {
        for (uint edge = 0; edge < 3; ++edge)
            factors[i].edgeTessellationFactor[edge] = half(2 * i + edge + 1);
        factors[i].insideTessellationFactor = 3;
        reinterpret_cast<device float*>(factors)[4 + i] = 0.5f - 0.25f * i;
    }
}

struct Point {
    float2 at [[attribute(0)]];
    float2 number [[attribute(1)]];
};
struct Patch {
    float offset [[attribute(3)]];
    patch_control_point<Point> points;
};
struct Out {
    float4 at [[position]];
    float4 where;
};

[[patch(triangle, 3)]] vertex Out surface(Patch patch [[stage_in]],
                                          float3 where [[position_in_patch]],
                                          uint number [[patch_id]],
                                          uint instance [[instance_id]],
                                          uint first [[base_instance]]) {
    Out out = {};
    float sum = patch.offset + instance + first;
    for (size_t i = 0; i < patch.points.size(); ++i) {
        out.at.xy += patch.points[i].at * where[i];
        sum += patch.points[i].number.x; // 0 + 1 + 2 or 3 + 4 + 5
    }
    out.at.w = patch.points[0].number.y * 2;
    out.where = float4(where, sum + 7 * number);
    return out;
}
fragment float4 paint(Out in [[stage_in]]) { return in.where; }
