// Light on the floor of a pool: bent rays gather, tiles shimmer underneath.
// @param depth 0.6 0 2
// @param ripple 1.0 0 3

float caustic(float2 q, float time) {
    float2 at = fmod(q * 6.2831853, float2(6.2831853)) - 250.0;
    float2 i = at;
    float sum = 1.0;
    for (int n = 0; n < 5; n++) {
        float t = time * (1.0 - 3.5 / float(n + 1));
        i = at + float2(cos(t - i.x) + sin(t + i.y), sin(t - i.y) + cos(t + i.x));
        sum += 1.0 / length(float2(at.x / (sin(i.x + t) * 200.0), at.y / (cos(i.y + t) * 200.0)));
    }
    sum /= 5.0;
    sum = 1.17 - pow(sum, 1.4);
    return pow(abs(sum), 8.0);
}

float2 slope(float2 q, float time) {
    float2 sum = float2(0.0);
    for (int i = 0; i < 6; i++) {
        float f = float(i) + 1.0;
        float2 d = float2(cos(f * 2.4), sin(f * 2.4));
        sum += d * cos(dot(q, d) * (3.0 + 2.0 * f) + time * (1.0 + 0.3 * f)) / f;
    }
    return sum;
}

float3 tiles(float2 q) {
    float2 cell = floor(q), f = abs(fract(q) - 0.5);
    float grout = smoothstep(0.46, 0.48, max(f.x, f.y));
    float tone = 0.9 + 0.1 * sin(cell.x * 12.7 + cell.y * 7.3);
    float3 paint = fmod(cell.x + cell.y * 3.0 + 50.0, 5.0) < 1.0 ? float3(0.15, 0.45, 0.6) : float3(0.35, 0.7, 0.78);
    return mix(paint * tone, float3(0.75, 0.85, 0.85), grout);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv + 0.05) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.ripple;
    float2 bend = slope(q * 2.0, time) * 0.02 * p.depth;
    float3 base = tiles((q + bend) * 10.0 + 10.0);
    float light = caustic(q * 1.5 + bend, time * 0.5 + 23.0);
    float red = caustic(q * 1.5 + bend * 1.3 + 0.004, time * 0.5 + 23.0);
    float3 rays = float3(red, light, light * 0.9);
    float3 colour = base * (0.55 + rays * 0.7) + float3(0.0, 0.15, 0.2) * p.depth * 0.4;
    float3 normal = normalize(float3(-bend * 20.0, 1.0));
    float3 view = normalize(float3(uv - 0.5, 1.2));
    float shine = pow(max(dot(reflect(-view, normal), normalize(float3(0.3, 0.5, 0.8))), 0.0), 60.0);
    colour += shine * 0.5;
    return float4(clamp(colour, 0.0, 1.0), 1.0);
}
