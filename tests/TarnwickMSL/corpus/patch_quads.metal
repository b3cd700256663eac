// Quad patches: control points in a loop over all of them and in a function, their number without
// one in the attribute, no stage_in record (5.1.1, 5.2.4).
// @attribute 0 float4 0 1
// @attribute 2 float 0 1
// @layout 1 8 control_point
// @runs fill 1
// @draws patches 1 4
// @pixel 0 0 : 0.0625 0.0625 300 4
// @pixel 7 3 : 0.9375 0.4375 300 4
// @within 1e-3
#include <metal_stdlib>
using namespace metal;

kernel void fill(device MTLQuadTessellationFactorsHalf* factors [[buffer(2)]]) {
    for (uint edge = 0; edge < 4; ++edge)
        factors->edgeTessellationFactor[edge] = 5;
    factors->insideTessellationFactor[0] = factors->insideTessellationFactor[1] = 2.5h;
}

// Point n has the numbers 2n, 2n + 1, 2n + 2, 2n + 3.
struct Point {
    float4 numbers [[attribute(0)]];
    float first [[attribute(2)]];
};
struct Patch {
    patch_control_point<Point> points;
};
struct Out {
    float4 at [[position]];
    float4 where;
};

static float sumOf(thread const patch_control_point<Point>& points) {
    float sum = 0;
    for (Point point : points)
        sum += dot(point.numbers, float4(1, 1, 1, 10)) + point.first; // 28 n + 33 for each point
    return sum;
}

[[patch(quad)]] vertex Out surface(Patch patch [[stage_in]], float2 where [[position_in_patch]]) {
    Out out;
    out.at = float4(where.x * 2 - 1, 1 - where.y * 2, 0, 1);
    out.where = float4(where, sumOf(patch.points), patch.points.size());
    return out;
}
fragment float4 paint(Out in [[stage_in]]) { return in.where; }
