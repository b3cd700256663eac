// A map: lines of equal height that keep their width, tints by height, hills shaded.
// @param interval 0.05 0.02 0.2
// @param zoom 3.0 1 8

float2 grad(int2 cell) {
    uint n = uint(cell.x + 8192) * 0x9e3779b9u ^ (uint(cell.y + 8192) * 0x7f4a7c15u);
    n ^= n >> 15;
    n *= 0xd168aaadu;
    n ^= n >> 15;
    float a = float(n & 0xffffu) / 65536.0 * 6.2831853;
    return float2(cos(a), sin(a));
}

float noise(float2 q) {
    int2 c = int2(floor(q));
    float2 f = fract(q), w = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float a = dot(grad(c), f), b = dot(grad(c + int2(1, 0)), f - float2(1, 0));
    float d = dot(grad(c + int2(0, 1)), f - float2(0, 1)), e = dot(grad(c + int2(1, 1)), f - float2(1, 1));
    return mix(mix(a, b, w.x), mix(d, e, w.x), w.y);
}

float land(float2 q) {
    float sum = 0.0, size = 0.55;
    for (int i = 0; i < 5; i++) {
        sum += size * noise(q);
        q = float2(1.7 * q.x - 1.0 * q.y, 1.0 * q.x + 1.7 * q.y) + 3.7;
        size *= 0.45;
    }
    return sum * 1.3 + 0.35;
}

float3 tint(float h) {
    if (h < 0.2)
        return mix(float3(0.35, 0.6, 0.75), float3(0.65, 0.82, 0.88), smoothstep(0.0, 0.2, h));
    if (h < 0.4)
        return mix(float3(0.72, 0.82, 0.6), float3(0.88, 0.88, 0.66), (h - 0.2) / 0.2);
    if (h < 0.65)
        return mix(float3(0.88, 0.88, 0.66), float3(0.8, 0.66, 0.48), (h - 0.4) / 0.25);
    return mix(float3(0.8, 0.66, 0.48), float3(0.97, 0.96, 0.95), clamp((h - 0.65) / 0.25, 0.0, 1.0));
}

float line(float x, float width) {
    float d = abs(fract(x + 0.5) - 0.5);
    float w = fwidth(x) * width;
    return smoothstep(w * 1.5, w * 0.5, d);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * p.zoom + float2(u.time * 0.1, 1.3);
    float h = land(q);
    float e = 0.01;
    float2 slope = float2(land(q + float2(e, 0.0)) - h, land(q + float2(0.0, e)) - h) / e;
    float3 normal = normalize(float3(-slope * 0.35, 1.0));
    float light = dot(normal, normalize(float3(-0.6, 0.6, 0.7)));
    float3 colour = tint(h);
    if (h > 0.2)
        colour *= 0.62 + 0.5 * light;
    float steps = h / p.interval;
    float minor = line(steps, 0.9), major = line(steps / 5.0, 2.0);
    float3 ink = h < 0.2 ? float3(0.2, 0.4, 0.6) : float3(0.45, 0.3, 0.15);
    colour = mix(colour, ink, minor * 0.45);
    colour = mix(colour, ink, major * 0.75);
    float shore = smoothstep(fwidth(h) * 2.0, 0.0, abs(h - 0.2));
    colour = mix(colour, float3(0.1, 0.25, 0.4), shore);
    float2 grid = float2(line(q.x * 2.0, 0.7), line(q.y * 2.0, 0.7));
    colour = mix(colour, float3(0.2, 0.2, 0.35), 0.3 * max(grid.x, grid.y));
    float wood = noise(q * 5.0 + 40.0);
    if (h > 0.22 && h < 0.5 && wood > 0.12) {
        float2 f = fract(q * 22.0) - 0.5;
        float tree = smoothstep(0.28, 0.2, length(f)) * smoothstep(0.12, 0.2, wood);
        colour = mix(colour, float3(0.25, 0.45, 0.22), tree * 0.8);
    }
    float2 v = abs(uv - 0.5);
    float frame = max(v.x, v.y);
    colour = mix(colour, float3(0.96, 0.94, 0.9), smoothstep(0.475, 0.478, frame));
    colour = mix(colour, float3(0.2), smoothstep(0.004, 0.002, abs(frame - 0.472)));
    return float4(colour, 1.0);
}
