// A kaleidoscope of folded sectors over a moving pattern of petals and rings.
// @param sectors 8 3 24
// @param zoom 1.4 0.4 4

float2 turned(float2 q, float a) {
    return float2(q.x * cos(a) - q.y * sin(a), q.x * sin(a) + q.y * cos(a));
}

float2 kaleidoscope(float2 q, float sectors) {
    float sector = 6.2831853 / sectors;
    float a = atan2(q.y, q.x) + 6.2831853;
    a = abs(fmod(a, sector) - 0.5 * sector);
    return length(q) * float2(cos(a), sin(a));
}

float petal(float2 q, float size) {
    float a = atan2(q.y, q.x);
    float r = size * (0.7 + 0.3 * cos(a * 5.0));
    return length(q) - r;
}

float3 tint(float x) {
    float3 a = float3(0.55, 0.45, 0.5), b = float3(0.45, 0.4, 0.45);
    return a + b * cos(6.2831853 * (x + float3(0.0, 0.2, 0.45)));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.0 * p.zoom;
    float radius = length(q);
    q = turned(q, u.time * 0.1);
    q = kaleidoscope(q, p.sectors);
    float3 colour = float3(0.22, 0.1, 0.28);
    float scale = 1.0;
    for (int i = 0; i < 6; i++) {
        float f = float(i);
        float2 centre = float2(0.55 + 0.3 * sin(u.time * 0.3 + f), 0.25 * cos(u.time * 0.4 + f * 1.7));
        float2 local = turned(q - centre, u.time * (0.2 + 0.05 * f) + f);
        float d = petal(local, 0.42 + 0.08 * sin(f * 2.0 + u.time)) / scale;
        float body = smoothstep(0.01, -0.01, d);
        float outline = smoothstep(0.025, 0.0, abs(d));
        float vein = 0.5 + 0.5 * sin(length(local) * 60.0 - u.time * 3.0);
        colour = mix(colour, tint(f * 0.17 + u.time * 0.03) * (0.7 + 0.3 * vein), body * 0.8);
        colour += outline * 0.35 * tint(f * 0.17 + 0.5);
        q = abs(turned(q, 0.7)) * 1.25 - float2(0.35, 0.2);
        scale *= 1.25;
    }
    float ring = abs(fract(radius * 2.0 - u.time * 0.15) - 0.5);
    colour += 0.35 * smoothstep(0.06, 0.0, ring) * tint(radius);
    colour *= smoothstep(1.6 * p.zoom, 0.9 * p.zoom, radius);
    colour = pow(max(colour, 0.0), float3(0.85));
    return float4(colour, 1.0);
}
