// An endless hall of columns: folded space, soft shadow, fog.
// @param walk 0.8 0 4
// @param fog 0.06 0 0.3

float box(float3 q, float3 size) {
    float3 d = abs(q) - size;
    return length(max(d, 0.0)) + min(max(d.x, max(d.y, d.z)), 0.0);
}

float column(float3 q) {
    float angle = atan2(q.z, q.x);
    float flutes = 0.03 * abs(sin(angle * 8.0));
    float shaft = length(q.xz) - 0.45 + flutes + 0.02 * q.y;
    shaft = max(shaft, abs(q.y) - 2.0);
    float foot = box(q + float3(0, 2.0, 0), float3(0.65, 0.15, 0.65));
    float head = box(q - float3(0, 2.0, 0), float3(0.7, 0.12, 0.7));
    return min(shaft, min(foot, head));
}

float scene(float3 q) {
    float3 folded = q;
    folded.xz = fmod(abs(q.xz) + 2.0, float2(4.0)) - 2.0;
    float plane = min(q.y + 2.1, 2.3 - q.y);
    return min(column(folded), plane);
}

float3 normalAt(float3 q) {
    float2 e = float2(0.002, 0.0);
    return normalize(float3(scene(q + e.xyy) - scene(q - e.xyy), scene(q + e.yxy) - scene(q - e.yxy),
                            scene(q + e.yyx) - scene(q - e.yyx)));
}

float shadow(float3 from, float3 towards) {
    float lit = 1.0, t = 0.05;
    for (int i = 0; i < 20; i++) {
        float d = scene(from + towards * t);
        lit = min(lit, 10.0 * d / t);
        t += clamp(d, 0.03, 0.4);
        if (lit < 0.01 || t > 5.0)
            break;
    }
    return clamp(lit, 0.0, 1.0);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float3 eye = float3(2.0, -0.4, u.time * p.walk);
    float turn = 0.3 * sin(u.time * 0.4);
    float3 ray = normalize(float3(at, 1.6));
    ray.xz = float2(ray.x * cos(turn) + ray.z * sin(turn), ray.z * cos(turn) - ray.x * sin(turn));
    float t = 0.0;
    for (int i = 0; i < 64; i++) {
        float d = scene(eye + ray * t);
        if (d < 0.001 * t || t > 40.0)
            break;
        t += d * 0.8;
    }
    float3 hit = eye + ray * t, normal = normalAt(hit);
    float3 sun = normalize(float3(0.5, 0.7, -0.4));
    float light = max(dot(normal, sun), 0.0) * shadow(hit, sun);
    float3 stone = mix(float3(0.75, 0.66, 0.52), float3(0.5, 0.45, 0.42), 0.5 + 0.5 * sin(hit.y * 14.0));
    float3 colour = stone * (0.25 + 0.2 * normal.y + light * float3(1.1, 0.95, 0.7));
    colour = mix(float3(0.72, 0.62, 0.5), colour, exp(-t * p.fog));
    return float4(sqrt(colour), 1.0);
}
