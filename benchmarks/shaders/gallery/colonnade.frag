// An endless hall of columns: folded space, soft shadow, fog.

float box(vec3 q, vec3 size) {
    vec3 d = abs(q) - size;
    return length(max(d, 0.0)) + min(max(d.x, max(d.y, d.z)), 0.0);
}

float column(vec3 q) {
    float angle = atan(q.z, q.x);
    float flutes = 0.03 * abs(sin(angle * 8.0));
    float shaft = length(q.xz) - 0.45 + flutes + 0.02 * q.y;
    shaft = max(shaft, abs(q.y) - 2.0);
    float foot = box(q + vec3(0, 2.0, 0), vec3(0.65, 0.15, 0.65));
    float head = box(q - vec3(0, 2.0, 0), vec3(0.7, 0.12, 0.7));
    return min(shaft, min(foot, head));
}

float scene(vec3 q) {
    vec3 folded = q;
    folded.xz = mod(abs(q.xz) + 2.0, vec2(4.0)) - 2.0;
    float plane = min(q.y + 2.1, 2.3 - q.y);
    return min(column(folded), plane);
}

vec3 normalAt(vec3 q) {
    vec2 e = vec2(0.002, 0.0);
    return normalize(vec3(scene(q + e.xyy) - scene(q - e.xyy), scene(q + e.yxy) - scene(q - e.yxy),
                            scene(q + e.yyx) - scene(q - e.yyx)));
}

float shadow(vec3 from, vec3 towards) {
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

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 eye = vec3(2.0, -0.4, u.time * p.walk);
    float turn = 0.3 * sin(u.time * 0.4);
    vec3 ray = normalize(vec3(at, 1.6));
    ray.xz = vec2(ray.x * cos(turn) + ray.z * sin(turn), ray.z * cos(turn) - ray.x * sin(turn));
    float t = 0.0;
    for (int i = 0; i < 64; i++) {
        float d = scene(eye + ray * t);
        if (d < 0.001 * t || t > 40.0)
            break;
        t += d * 0.8;
    }
    vec3 hit = eye + ray * t, normal = normalAt(hit);
    vec3 sun = normalize(vec3(0.5, 0.7, -0.4));
    float light = max(dot(normal, sun), 0.0) * shadow(hit, sun);
    vec3 stone = mix(vec3(0.75, 0.66, 0.52), vec3(0.5, 0.45, 0.42), 0.5 + 0.5 * sin(hit.y * 14.0));
    vec3 colour = stone * (0.25 + 0.2 * normal.y + light * vec3(1.1, 0.95, 0.7));
    colour = mix(vec3(0.72, 0.62, 0.5), colour, exp(-t * p.fog));
    return vec4(sqrt(colour), 1.0);
}
