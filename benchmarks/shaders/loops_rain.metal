// @param drops 5 2 10

float hash1(float n) {
    return fract(sin(n * 91.3458) * 47453.5453);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / u.resolution.y;
    float total = 0.0;
    float2 bend = float2(0.0);
    for (int i = 0; i < 12; i++) {
        float k = float(i) + 1.0;
        float scale = p.drops + k * 1.5;
        float2 r = q * float2(scale, scale * 0.4);
        float column = floor(r.x);
        r.y += u.time * (0.5 + hash1(column + k * 17.0)) + hash1(column * 3.1 + k);
        float row = floor(r.y);
        float2 inside = fract(r) - 0.5;
        float wave = sin((hash1(row + column) + inside.y) * 6.2831853) * 0.2;
        if (hash1(row * 7.7 + column * 1.3 + k) > 0.4) {
            float d = length((inside - float2(wave, 0.0)) * float2(1.0, 0.4));
            float drop = smoothstep(0.12, 0.02, d);
            float trail = smoothstep(0.05, 0.0, abs(inside.x - wave)) * smoothstep(-0.1, 0.5, inside.y);
            total += drop + 0.3 * trail;
            bend += inside * drop;
        }
    }
    float3 back = mix(float3(0.1, 0.15, 0.25), float3(0.6, 0.5, 0.4), uv.y + bend.y * 0.5);
    return float4(back + total * 0.15 * float3(0.8, 0.9, 1.0), 1.0);
}
