// Solids cut out of one another; a switch chooses the solid and its material.
// @param speed 0.5 0 2
// @param round 0.03 0 0.1

struct Hit {
    float distance;
    int material;
};

float ball(float3 q, float r) {
    return length(q) - r;
}

float slab(float3 q, float3 size, float round_) {
    float3 d = abs(q) - size + round_;
    return length(max(d, 0.0)) + min(max(d.x, max(d.y, d.z)), 0.0) - round_;
}

float rod(float3 q, float r, float h) {
    float2 d = float2(length(q.xz) - r, abs(q.y) - h);
    return min(max(d.x, d.y), 0.0) + length(max(d, 0.0));
}

Hit closer(Hit a, float distance, int material) {
    if (distance < a.distance) {
        a.distance = distance;
        a.material = material;
    }
    return a;
}

Hit scene(float3 q, float time, float round_) {
    Hit best;
    best.distance = q.y + 0.8;
    best.material = 0;
    for (int i = 0; i < 4; i++) {
        float a = float(i) * 1.5707963 + time;
        float3 c = q - float3(cos(a) * 1.3, 0.15 * sin(time * 2.0 + float(i)), sin(a) * 1.3);
        float d = 0.0;
        switch (i) {
        case 0: d = max(slab(c, float3(0.5), round_), -ball(c, 0.62)); break;
        case 1: d = max(ball(c, 0.6), -min(rod(c, 0.3, 1.0), min(rod(c.yxz, 0.3, 1.0), rod(c.xzy, 0.3, 1.0)))); break;
        case 2: d = max(rod(c, 0.5, 0.6), -slab(c - float3(0.0, 0.3, 0.0), float3(0.6, 0.2, 0.2), 0.02)); break;
        default: d = max(max(ball(c - float3(0.25, 0, 0), 0.6), ball(c + float3(0.25, 0, 0), 0.6)), slab(c, float3(0.5), round_)); break;
        }
        best = closer(best, d, i + 1);
    }
    return best;
}

float3 material(int which, float3 hit) {
    switch (which) {
    case 0: {
        float2 tile = floor(hit.xz * 1.5);
        return float3(0.25 + 0.15 * fmod(abs(tile.x + tile.y), 2.0));
    }
    case 1: return float3(0.85, 0.3, 0.2);
    case 2: return float3(0.95, 0.7, 0.2);
    case 3: return float3(0.25, 0.6, 0.45);
    default: return float3(0.3, 0.4, 0.8);
    }
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 at = (uv * 2.0 - 1.0) * float2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    float3 eye = float3(0.0, 1.7, -3.8), ray = normalize(float3(at.x, at.y - 0.7, 1.9));
    float t = 0.5;
    Hit found;
    found.distance = 1.0;
    found.material = 0;
    for (int i = 0; i < 56; i++) {
        found = scene(eye + ray * t, time, p.round);
        if (found.distance < 0.001 || t > 14.0)
            break;
        t += found.distance;
    }
    float3 background = float3(0.6, 0.65, 0.7);
    if (t > 14.0)
        return float4(background, 1.0);
    float3 hit = eye + ray * t;
    float e = 0.001;
    float3 normal = normalize(float3(scene(hit + float3(e, 0, 0), time, p.round).distance,
                                     scene(hit + float3(0, e, 0), time, p.round).distance,
                                     scene(hit + float3(0, 0, e), time, p.round).distance) - found.distance);
    float3 sun = normalize(float3(0.5, 0.8, -0.5));
    float lit = 1.0, s = 0.03;
    for (int i = 0; i < 16; i++) {
        float d = scene(hit + normal * 0.01 + sun * s, time, p.round).distance;
        lit = min(lit, 8.0 * d / s);
        s += clamp(d, 0.02, 0.3);
        if (lit < 0.01)
            break;
    }
    float light = max(dot(normal, sun), 0.0) * clamp(lit, 0.0, 1.0);
    float3 colour = material(found.material, hit) * (0.3 + 0.8 * light + 0.1 * normal.y);
    return float4(mix(background, colour, exp(-0.004 * t * t)), 1.0);
}
