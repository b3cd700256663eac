// Solids cut out of one another; a switch chooses the solid and its material.

struct Hit {
    float distance;
    int material;
};

float ball(vec3 q, float r) {
    return length(q) - r;
}

float slab(vec3 q, vec3 size, float round_) {
    vec3 d = abs(q) - size + round_;
    return length(max(d, 0.0)) + min(max(d.x, max(d.y, d.z)), 0.0) - round_;
}

float rod(vec3 q, float r, float h) {
    vec2 d = vec2(length(q.xz) - r, abs(q.y) - h);
    return min(max(d.x, d.y), 0.0) + length(max(d, 0.0));
}

Hit closer(Hit a, float distance, int material) {
    if (distance < a.distance) {
        a.distance = distance;
        a.material = material;
    }
    return a;
}

Hit scene(vec3 q, float time, float round_) {
    Hit best;
    best.distance = q.y + 0.8;
    best.material = 0;
    for (int i = 0; i < 4; i++) {
        float a = float(i) * 1.5707963 + time;
        vec3 c = q - vec3(cos(a) * 1.3, 0.15 * sin(time * 2.0 + float(i)), sin(a) * 1.3);
        float d = 0.0;
        switch (i) {
        case 0: d = max(slab(c, vec3(0.5), round_), -ball(c, 0.62)); break;
        case 1: d = max(ball(c, 0.6), -min(rod(c, 0.3, 1.0), min(rod(c.yxz, 0.3, 1.0), rod(c.xzy, 0.3, 1.0)))); break;
        case 2: d = max(rod(c, 0.5, 0.6), -slab(c - vec3(0.0, 0.3, 0.0), vec3(0.6, 0.2, 0.2), 0.02)); break;
        default: d = max(max(ball(c - vec3(0.25, 0, 0), 0.6), ball(c + vec3(0.25, 0, 0), 0.6)), slab(c, vec3(0.5), round_)); break;
        }
        best = closer(best, d, i + 1);
    }
    return best;
}

vec3 material(int which, vec3 hit) {
    switch (which) {
    case 0: {
        vec2 tile = floor(hit.xz * 1.5);
        return vec3(0.25 + 0.15 * mod(abs(tile.x + tile.y), 2.0));
    }
    case 1: return vec3(0.85, 0.3, 0.2);
    case 2: return vec3(0.95, 0.7, 0.2);
    case 3: return vec3(0.25, 0.6, 0.45);
    default: return vec3(0.3, 0.4, 0.8);
    }
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    vec3 eye = vec3(0.0, 1.7, -3.8), ray = normalize(vec3(at.x, at.y - 0.7, 1.9));
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
    vec3 background = vec3(0.6, 0.65, 0.7);
    if (t > 14.0)
        return vec4(background, 1.0);
    vec3 hit = eye + ray * t;
    float e = 0.001;
    vec3 normal = normalize(vec3(scene(hit + vec3(e, 0, 0), time, p.round).distance,
                                     scene(hit + vec3(0, e, 0), time, p.round).distance,
                                     scene(hit + vec3(0, 0, e), time, p.round).distance) - found.distance);
    vec3 sun = normalize(vec3(0.5, 0.8, -0.5));
    float lit = 1.0, s = 0.03;
    for (int i = 0; i < 16; i++) {
        float d = scene(hit + normal * 0.01 + sun * s, time, p.round).distance;
        lit = min(lit, 8.0 * d / s);
        s += clamp(d, 0.02, 0.3);
        if (lit < 0.01)
            break;
    }
    float light = max(dot(normal, sun), 0.0) * clamp(lit, 0.0, 1.0);
    vec3 colour = material(found.material, hit) * (0.3 + 0.8 * light + 0.1 * normal.y);
    return vec4(mix(background, colour, exp(-0.004 * t * t)), 1.0);
}
