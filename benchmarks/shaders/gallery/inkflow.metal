// Ink that a field without sources carries: the place of each pixel is traced back in time.
// @param steps 14 2 24
// @param strength 0.06 0.01 0.15

float hash(int2 c) {
    uint n = uint(c.x + 4096) * 374761393u + uint(c.y + 4096) * 668265263u;
    n = (n ^ (n >> 13)) * 1274126177u;
    return float((n ^ (n >> 16)) & 0xffffffu) / 16777216.0;
}

// Noise and its two derivatives.
float3 noise(float2 q) {
    int2 c = int2(floor(q));
    float2 f = fract(q);
    float2 w = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float2 dw = 30.0 * f * f * (f * (f - 2.0) + 1.0);
    float a = hash(c), b = hash(c + int2(1, 0)), d = hash(c + int2(0, 1)), e = hash(c + int2(1, 1));
    float k = a - b - d + e;
    return float3(a + (b - a) * w.x + (d - a) * w.y + k * w.x * w.y, dw.x * (b - a + k * w.y), dw.y * (d - a + k * w.x));
}

float2 curl(float2 q, float time) {
    float2 sum = float2(0.0);
    float size = 1.0, scale = 1.5;
    for (int i = 0; i < 3; i++) {
        float3 n = noise(q * scale + float2(time * 0.3, -time * 0.2) * float(i + 1));
        sum += size * float2(n.z, -n.y);
        scale *= 2.0;
        size *= 0.5;
    }
    return sum;
}

float3 dye(float2 q) {
    float2 cell = floor(q * 4.0), f = fract(q * 4.0) - 0.5;
    int2 id = int2(cell);
    float n = hash(id);
    float radius = 0.2 + 0.25 * hash(id + int2(31, 7));
    float blob = smoothstep(radius, radius - 0.12, length(f));
    float3 paint = float3(0.0);
    switch (int(n * 5.0)) {
    case 0: paint = float3(0.1, 0.2, 0.5); break;
    case 1: paint = float3(0.75, 0.15, 0.2); break;
    case 2: paint = float3(0.95, 0.65, 0.15); break;
    case 3: paint = float3(0.1, 0.5, 0.45); break;
    default: paint = float3(0.25, 0.1, 0.3); break;
    }
    return mix(float3(0.97, 0.95, 0.9), paint, blob);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    int steps = int(p.steps);
    float2 at = q;
    float travelled = 0.0, turned = 0.0;
    float2 before = float2(0.0);
    for (int i = 0; i < steps; i++) {
        float2 v = curl(at, u.time - 0.05 * float(i));
        float2 middle = at - 0.5 * p.strength * v;
        v = curl(middle, u.time - 0.05 * float(i) - 0.025);
        at -= p.strength * v;
        travelled += length(v) * p.strength;
        turned += before.x * v.y - before.y * v.x;
        before = v;
    }
    float3 colour = dye(at);
    float3 fine = dye(at * 2.3 + 7.0);
    colour = mix(colour, colour * fine, 0.45);
    colour *= 0.85 + 0.15 * cos(turned * 2.0);
    float thread_ = smoothstep(0.06, 0.0, abs(fract(at.x * 12.0 + at.y * 3.0) - 0.5));
    colour *= 1.0 - 0.18 * thread_;
    colour *= 1.05 - 0.12 * travelled;
    float paper = hash(int2(uv * u.resolution));
    colour -= 0.02 * paper;
    return float4(clamp(colour, 0.0, 1.0), 1.0);
}
