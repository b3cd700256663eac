// A landscape from value noise, marched with growing steps; sun, haze and snow above a height.
// @param roughness 0.5 0.3 0.7
// @param snow 0.9 0 2

float hash(int2 q) {
    uint n = uint(q.x) * 1597334677u ^ uint(q.y) * 3812015801u;
    n = (n ^ (n >> 15)) * 2246822519u;
    return float(n >> 8) / 16777216.0;
}

float noise(float2 q) {
    int2 cell = int2(floor(q));
    float2 f = fract(q);
    f = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    return mix(mix(hash(cell), hash(cell + int2(1, 0)), f.x),
               mix(hash(cell + int2(0, 1)), hash(cell + int2(1, 1)), f.x), f.y);
}

float height(float2 q, int octaves, float roughness) {
    float sum = 0.0, size = 1.0;
    float2x2 twist = float2x2(float2(0.8, 0.6), float2(-0.6, 0.8));
    for (int i = 0; i < octaves; i++) {
        sum += size * noise(q);
        size *= roughness;
        q = twist * q * 2.03;
    }
    return sum;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float3 eye = float3(u.time * 0.4, 1.9, u.time * 0.25);
    float3 ray = normalize(float3(at.x, at.y - 0.35, 1.5));
    float3 sun = normalize(float3(0.6, 0.35, 0.7));
    float glare = max(dot(ray, sun), 0.0);
    float3 sky = mix(float3(0.75, 0.78, 0.82), float3(0.25, 0.45, 0.75), clamp(ray.y * 2.0, 0.0, 1.0));
    sky += float3(1.0, 0.7, 0.4) * (0.3 * pow(glare, 8.0) + pow(glare, 250.0));
    float t = 0.2, before = 0.0;
    bool found = false;
    for (int i = 0; i < 50; i++) {
        float3 q = eye + ray * t;
        float gap = q.y - height(q.xz, 4, p.roughness);
        if (gap < 0.003 * t) {
            found = true;
            break;
        }
        before = t;
        t += 0.45 * gap + 0.01 * t;
        if (t > 18.0 || q.y > 3.5)
            break;
    }
    if (!found)
        return float4(sqrt(sky), 1.0);
    float3 hit = eye + ray * mix(before, t, 0.7);
    float e = 0.004 * t;
    float here = height(hit.xz, 6, p.roughness);
    float3 normal = normalize(float3(here - height(hit.xz + float2(e, 0.0), 6, p.roughness), e,
                                     here - height(hit.xz + float2(0.0, e), 6, p.roughness)));
    float white = smoothstep(p.snow, p.snow + 0.35, here) * smoothstep(0.4, 0.7, normal.y);
    float3 ground = mix(float3(0.33, 0.24, 0.17), float3(0.2, 0.26, 0.12), smoothstep(0.6, 0.9, normal.y));
    ground = mix(ground, float3(0.9, 0.93, 1.0), white);
    float3 colour = ground * (1.2 * max(dot(normal, sun), 0.0) + 0.3 * normal.y);
    colour = mix(sky, colour, exp(-0.006 * t * t));
    return float4(sqrt(colour), 1.0);
}
