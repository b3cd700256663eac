// Cells with exact distances to their borders, in two passes over the neighbours.
// @param cells 7 2 20
// @param crack 0.06 0.01 0.2

uint2 mixed(uint2 v) {
    v = v * 1664525u + 1013904223u;
    v.x += v.y * 1664525u;
    v.y += v.x * 1664525u;
    v ^= v >> 16u;
    v.x += v.y * 1664525u;
    v.y += v.x * 1664525u;
    return v ^ (v >> 16u);
}

float2 random(int2 cell) {
    return float2(mixed(uint2(cell + 1024)) >> 8u) / 16777216.0;
}

float2 place(int2 cell, float time) {
    return 0.5 + 0.42 * sin(time + 6.2831853 * random(cell));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv * float2(u.resolution.x / u.resolution.y, 1.0) * p.cells;
    int2 cell = int2(floor(q));
    float2 f = fract(q);
    float nearest = 8.0;
    int2 which = int2(0);
    float2 towards = float2(0.0);
    for (int y = -1; y <= 1; y++) {
        for (int x = -1; x <= 1; x++) {
            int2 offset = int2(x, y);
            float2 r = float2(offset) + place(cell + offset, u.time) - f;
            float d = dot(r, r);
            if (d < nearest) {
                nearest = d;
                towards = r;
                which = offset;
            }
        }
    }
    float border = 8.0;
    for (int y = -2; y <= 2; y++) {
        for (int x = -2; x <= 2; x++) {
            int2 offset = which + int2(x, y);
            float2 r = float2(offset) + place(cell + offset, u.time) - f;
            float2 between = r - towards;
            if (dot(between, between) > 0.00001)
                border = min(border, dot(0.5 * (towards + r), normalize(between)));
        }
    }
    float2 id = random(cell + which + 77);
    float3 glass = 0.5 + 0.5 * cos(float3(0.0, 0.6, 1.3) + id.x * 6.0 + id.y);
    float contour = 0.5 + 0.5 * sin(border * 60.0);
    float3 colour = glass * (0.55 + 0.3 * smoothstep(0.0, 0.5, border)) + 0.06 * contour;
    float lead = smoothstep(p.crack, p.crack + 0.02, border);
    float shine = smoothstep(0.05, 0.0, abs(border - p.crack * 0.5)) * 0.3;
    colour = mix(float3(0.08) + shine, colour, lead);
    float2 light = towards - float2(0.2, -0.3);
    colour += lead * 0.25 * exp(-14.0 * dot(light, light));
    return float4(colour, 1.0);
}
