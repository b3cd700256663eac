struct Hit {
    float distance;
    int material;
};

Hit nearest(vec3 q, float radius) {
    Hit hit = Hit(q.y + 1.0, 0);
    float ball = length(q) - radius;
    if (ball < hit.distance) hit = Hit(ball, 1);
    vec3 b = abs(q - vec3(1.6, -0.4, 0.3)) - 0.45;
    float box = length(max(b, 0.0)) + min(max(b.x, max(b.y, b.z)), 0.0) - 0.1;
    if (box < hit.distance) hit = Hit(box, 2);
    return hit;
}

vec3 normalAt(vec3 q, float radius) {
    const vec2 e = vec2(0.001, 0.0);
    return normalize(vec3(nearest(q + e.xyy, radius).distance - nearest(q - e.xyy, radius).distance,
                          nearest(q + e.yxy, radius).distance - nearest(q - e.yxy, radius).distance,
                          nearest(q + e.yyx, radius).distance - nearest(q - e.yyx, radius).distance));
}

float shadow(vec3 q, vec3 light, float radius, float softness) {
    float result = 1.0, t = 0.05;
    for (int i = 0; i < 32; i++) {
        float d = nearest(q + light * t, radius).distance;
        if (d < 0.001) return 0.0;
        result = min(result, softness * d / t);
        t += clamp(d, 0.02, 0.4);
        if (t > 6.0) break;
    }
    return result;
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * u.resolution / u.resolution.y * 2.0;
    vec3 origin = vec3(0.0, 0.3, 3.6), direction = normalize(vec3(q, -1.7));
    vec3 light = normalize(vec3(sin(u.time), 1.2, cos(u.time)));
    float t = 0.0;
    Hit hit = Hit(0.0, -1);
    for (int i = 0; i < 80; i++) {
        hit = nearest(origin + direction * t, p.radius);
        if (hit.distance < 0.001 * t) break;
        t += hit.distance;
        if (t > 12.0) return vec4(0.2, 0.3, 0.5, 1.0);
    }
    vec3 at = origin + direction * t;
    vec3 n = normalAt(at, p.radius);
    vec3 albedo;
    switch (hit.material) {
        case 0: albedo = vec3(0.5); break;
        case 1: albedo = vec3(0.9, 0.4, 0.2); break;
        default: albedo = vec3(0.2, 0.5, 0.8);
    }
    float lit = clamp(dot(n, light), 0.0, 1.0) * shadow(at + n * 0.01, light, p.radius, p.softness);
    return vec4(albedo * (0.15 + 0.85 * lit) * exp(-0.02 * t), 1.0);
}
