// @param cells 12 2 40
// @param edge 0.06 0.01 0.3

float2 hash2(float2 c) {
    float3 q = fract(float3(c.xyx) * float3(0.1031, 0.1030, 0.0973));
    q += dot(q, q.yzx + 33.33);
    return fract((q.xx + q.yz) * q.zy);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * p.cells;
    float2 cell = floor(q), f = fract(q);
    float nearest = 8.0, second = 8.0;
    float2 id = float2(0.0);
    for (int y = -1; y <= 1; y++) {
        for (int x = -1; x <= 1; x++) {
            float2 offset = float2(x, y);
            float2 h = hash2(cell + offset);
            float2 r = offset + 0.5 + 0.4 * sin(u.time + 6.2831 * h) - f;
            float d = dot(r, r);
            if (d < nearest) {
                second = nearest;
                nearest = d;
                id = cell + offset;
            } else if (d < second) {
                second = d;
            }
        }
    }
    float border = smoothstep(0.0, p.edge, sqrt(second) - sqrt(nearest));
    float3 colour = 0.5 + 0.5 * cos(float3(0, 2, 4) + hash2(id).x * 6.0);
    return float4(colour * border, 1.0);
}
