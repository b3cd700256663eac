// The same again, finer
// One layer of noise has one size of lump. Clouds have all sizes: add layers, each finer and weaker.

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

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / min(u.resolution.x, u.resolution.y) * p.scale;
    q += float2(3.1, 7.7);
    float t = u.time * p.speed;

    // Five octaves: the fog gets a grain.
    float height = fbm(q + 0.2 * t, 5);
    return float4(float3(height), 1.0);
}
