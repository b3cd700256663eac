// Inputs that the fragment function interpolates where it wants them, in pixels from the upper left
// (6.11); with and without perspective, of floats and halves.
// @draws triangle 3 samples
// @pixel 2 3 : 2.25 3.75 2.5 3.5
// @pixel 6 1 : 6.25 1.75 6.5 1.5
// @expects 1 1 1 1
// @within 2e-3
#include <metal_stdlib>
using namespace metal;

struct Corner {
    float4 at [[position]];
    float2 place;
    half4 narrow;
    float linear [[center_no_perspective]];
    float3 plain;
};
struct Taken {
    interpolant<float2, interpolation::perspective> place;
    interpolant<half4, interpolation::perspective> narrow;
    interpolant<float, interpolation::no_perspective> linear;
    float3 plain;
};

vertex Corner corner(uint v [[vertex_id]]) {
    float2 at = float2(v == 1 ? 3.0 : -1.0, v == 2 ? 3.0 : -1.0), place = float2(4, -4) * at + 4;
    return {float4(at, 0.5, 1), place, half4(half2(place), 1, 2), place.x, float3(place, 1)};
}
static float2 centre(Taken in) { return in.place.interpolate_at_center(); }
fragment float4 places(Taken in [[stage_in]], device float* out [[buffer(0)]]) {
    float2 offset = in.place.interpolate_at_offset(float2(0.25, 0.75)), middle = centre(in);
    if (int(in.plain.x) == 2 && int(in.plain.y) == 3) {
        float2 sample = in.place.interpolate_at_sample(1);
        half4 narrow = in.narrow.interpolate_at_offset(0.25);
        out[0] = distance(sample - floor(sample), get_sample_position(1)) < 1e-3;
        out[1] = all(abs(narrow - half4(2.25h, 3.25h, 1, 2)) < 0.02h);
        out[2] = abs(in.linear.interpolate_at_center() - middle.x) < 1e-3;
        out[3] = all(abs(in.place.interpolate_at_centroid() - middle) < 0.501); // a covered sample or the centre
    }
    return float4(offset, middle);
}
