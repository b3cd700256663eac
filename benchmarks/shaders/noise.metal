// @param scale 9 1 40

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float noise(float2 q) {
    float2 cell = floor(q);
    float2 f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    float a = hash(cell), b = hash(cell + float2(1, 0));
    float c = hash(cell + float2(0, 1)), d = hash(cell + float2(1, 1));
    return mix(mix(a, b, f.x), mix(c, d, f.x), f.y);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * p.scale + u.time;
    float n = noise(q) * 0.6 + noise(q * 2.1) * 0.4;
    return float4(float3(n, n * n, 1.0 - n), 1.0);
}
