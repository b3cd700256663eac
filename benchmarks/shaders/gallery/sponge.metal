// A sponge of cubes with square holes at every scale.
// @param levels 4 1 5
// @param spin 0.25 0 2

float cube(float3 q, float size) {
    float3 d = abs(q) - size;
    return min(max(d.x, max(d.y, d.z)), 0.0) + length(max(d, 0.0));
}

float2 sponge(float3 q, int levels) {
    float d = cube(q, 1.0), scale = 1.0, found = 0.0;
    for (int level = 0; level < levels; level++) {
        float3 a = fract((q * scale + 1.0) * 0.5) * 2.0 - 1.0;
        scale *= 3.0;
        float3 r = abs(1.0 - 3.0 * abs(a));
        float holes = (min(max(r.x, r.y), min(max(r.y, r.z), max(r.z, r.x))) - 1.0) / scale;
        if (holes > d) {
            d = holes;
            found = float(level + 1);
        }
    }
    return float2(d, found);
}

float occlusion(float3 hit, float3 normal, int levels) {
    float sum = 0.0, weight = 1.0;
    for (int i = 1; i <= 5; i++) {
        float reach = 0.04 * float(i);
        sum += weight * (reach - sponge(hit + normal * reach, levels).x);
        weight *= 0.6;
    }
    return clamp(1.0 - 3.0 * sum, 0.0, 1.0);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float angle = u.time * p.spin;
    int levels = int(p.levels);
    float3 eye = 3.0 * float3(cos(angle) * 0.9, 0.6, sin(angle) * 0.9);
    float3 forward = normalize(-eye), side = normalize(cross(forward, float3(0, 1, 0)));
    float3 up = cross(side, forward);
    float3 ray = normalize(at.x * side + at.y * up + 1.8 * forward);
    float t = 1.0;
    float2 found = float2(1.0, 0.0);
    for (int i = 0; i < 64; i++) {
        found = sponge(eye + ray * t, levels);
        if (found.x < 0.0015 || t > 6.0)
            break;
        t += found.x;
    }
    float3 colour = mix(float3(0.12, 0.14, 0.2), float3(0.5, 0.45, 0.5), uv.y);
    if (t < 6.0) {
        float3 hit = eye + ray * t;
        float2 e = float2(0.001, 0.0);
        float3 normal = normalize(float3(sponge(hit + e.xyy, levels).x - sponge(hit - e.xyy, levels).x,
                                         sponge(hit + e.yxy, levels).x - sponge(hit - e.yxy, levels).x,
                                         sponge(hit + e.yyx, levels).x - sponge(hit - e.yyx, levels).x));
        float3 base = 0.6 + 0.4 * cos(float3(0.3, 1.2, 2.2) + found.y * 1.3);
        float sun = max(dot(normal, normalize(float3(0.3, 0.9, 0.5))), 0.0);
        float open = occlusion(hit, normal, levels);
        colour = base * (0.25 + 0.75 * sun) * open;
        colour = mix(colour, float3(0.4, 0.4, 0.5), 1.0 - exp(-0.02 * t * t));
    }
    return float4(sqrt(colour), 1.0);
}
