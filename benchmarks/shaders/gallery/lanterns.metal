// Paper lanterns that rise in rows: glow is added along the ray, nothing is hit.
// @param rise 0.4 0 2
// @param glow 0.02 0.002 0.1

float3 hash3(float3 q) {
    uint3 n = uint3(int3(q)) * uint3(1597334673u, 3812015801u, 2798796415u);
    uint m = (n.x ^ n.y ^ n.z) * 1597334673u;
    m ^= m >> 15;
    uint3 r = m * uint3(0x9e3779b1u, 0x85ebca77u, 0xc2b2ae3du);
    return float3(r >> 8u) / 16777216.0;
}

float lantern(float3 q) {
    float body = length(q * float3(1.0, 0.75, 1.0)) - 0.12;
    float cut = abs(q.y) - 0.1;
    return max(body, cut);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float3 ray = normalize(float3(at.x, at.y + 0.2, 1.4));
    float3 eye = float3(0.3 * u.time * 0.2, 0.0, u.time * 0.15);
    float3 colour = mix(float3(0.08, 0.05, 0.1), float3(0.01, 0.01, 0.04), clamp(ray.y + 0.5, 0.0, 1.0));
    float stars = hash3(floor(ray * 160.0)).x;
    colour += step(0.998, stars) * 0.6 * smoothstep(0.0, 0.4, ray.y);
    float t = 0.4;
    for (int i = 0; i < 40; i++) {
        float3 q = eye + ray * t;
        float column = hash3(float3(floor(q.xz), 1.0)).x;
        q.y -= u.time * p.rise * (0.5 + column) + column * 5.0;
        float3 cell = floor(q);
        float3 random = hash3(cell);
        float3 local = q - cell - 0.5 - (random - 0.5) * 0.6;
        float d = lantern(local);
        if (random.x > 0.45) {
            float flicker = 0.8 + 0.2 * sin(u.time * 9.0 * random.y + random.z * 30.0);
            float3 paint = mix(float3(1.0, 0.45, 0.12), float3(1.0, 0.75, 0.3), random.z);
            float near = max(d, 0.0) + 0.02;
            colour += paint * flicker * p.glow * 0.02 / (near * near) * exp(-0.25 * t);
        } else {
            d = 0.3;
        }
        t += clamp(abs(d) * 0.7, 0.05, 0.35);
        if (t > 14.0)
            break;
    }
    colour = 1.0 - exp(-colour * 1.4);
    return float4(colour, 1.0);
}
