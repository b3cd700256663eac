// Noise that pushes noise
// Ask for noise at a place that other noise has pushed aside, and it begins to flow; do it twice.

// @param speed 0.35 0.0 1.5 How fast the tide runs
// @param scale 1.6 0.6 4.0 How much of the tide is seen
// @param warp 1.0 0.0 2.0 How far the flow bends itself

// A number that looks random, and is the same for the same cell on every GPU.
float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Value noise: random numbers at whole coordinates, blended by a curve that arrives with slope and
// curvature 0, so that no grid shows in the light.
float noise(float2 q) {
    float2 cell = floor(q);
    float2 f = q - cell;
    float2 s = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float2 e = float2(0.0, 1.0);
    return mix(mix(hash(cell), hash(cell + e.yx), s.x),
               mix(hash(cell + e.xy), hash(cell + e.yy), s.x), s.y);
}

// Octaves of noise, each half as strong and about twice as fine as the last. Turning the plane
// between octaves keeps their grids from lining up.
float fbm(float2 q, int octaves) {
    const float2x2 octave = float2x2(float2(1.60, 1.20), float2(-1.20, 1.60));
    float sum = 0.0, weight = 0.5;
    for (int i = 0; i < octaves; i++) {
        sum += weight * noise(q);
        q = octave * q + 17.3;
        weight *= 0.5;
    }
    return sum;
}

// The height of the tide at a place, and what it went through on the way, for the colours.
struct Tide {
    float height;
    float2 first;  // the first push
    float2 second; // the second
};

// Each push is a pair of noises, which drift at their own pace; the second pair is asked for where
// the first one leads.
Tide tideAt(float2 q, float t, float warp, int detail) {
    Tide tide;
    tide.first = float2(fbm(q + float2(0.0, 0.13 * t), 3),
                        fbm(q + float2(5.2, 1.3 - 0.11 * t), 3));
    float2 r = q + 2.4 * warp * (tide.first - 0.5);
    tide.second = float2(fbm(r + float2(1.7 + 0.09 * t, 9.2), 3),
                         fbm(r + float2(8.3, 2.8 + 0.12 * t), 3));
    tide.height = fbm(q + 3.0 * warp * (tide.second - 0.5) + 0.05 * t, detail);
    return tide;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y) * p.scale;
    q += float2(3.1, 7.7);
    float t = u.time * p.speed;

    // More contrast, so that the folds can be seen.
    Tide tide = tideAt(q, t, p.warp, 5);
    float height = smoothstep(0.20, 0.85, tide.height);
    return float4(float3(height), 1.0);
}
