// Numbers that look random
// Everything grows out of noise: a number at every whole coordinate, and a smooth way from each to
// the next.

// @param speed 0.35 0.0 1.5 How fast the tide runs
// @param scale 1.6 0.6 4.0 How much of the tide is seen

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

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y) * p.scale;
    q += float2(3.1, 7.7);
    float t = u.time * p.speed;

    // Black where the noise is 0, white where it is 1: fog.
    float height = noise(q * 3.0 + t);
    return float4(float3(height), 1.0);
}
