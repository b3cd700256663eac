// @param cells 6 2 12

float2 hash2(float2 q) {
    q = float2(dot(q, float2(127.1, 311.7)), dot(q, float2(269.5, 183.3)));
    return fract(sin(q) * 43758.5453);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * float2(u.resolution.x / u.resolution.y, 1.0) * p.cells;
    float2 cell = floor(q), inside = fract(q);
    float nearest = 8.0, second = 8.0;
    float2 best = float2(0.0);
    for (float y = -1.0; y <= 1.0; y++) {
        for (float x = -1.0; x <= 1.0; x++) {
            float2 at = float2(x, y);
            float2 o = hash2(cell + at);
            o = 0.5 + 0.5 * sin(u.time + 6.2831853 * o);
            float2 way = at + o - inside;
            float d = dot(way, way);
            if (d < nearest) {
                second = nearest;
                nearest = d;
                best = cell + at;
            } else if (d < second) {
                second = d;
            }
        }
    }
    float2 tint = hash2(best);
    float edge = smoothstep(0.02, 0.12, sqrt(second) - sqrt(nearest));
    return float4(edge * (0.5 + 0.5 * cos(6.28 * (tint.x + float3(0.0, 0.3, 0.6)))), 1.0);
}
