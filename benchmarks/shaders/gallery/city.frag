// Towers on a grid at night: one ray walks from cell to cell and tests one box in each.

float hash(vec2 q) {
    vec3 a = fract(q.xyx * vec3(0.1031, 0.1131, 0.0973));
    a += dot(a, a.yzx + 19.19);
    return fract((a.x + a.y) * a.z);
}

vec3 windows(vec3 hit, vec3 normal, vec2 cell, float lit) {
    if (normal.y > 0.5)
        return vec3(0.03, 0.03, 0.04);
    float along = abs(normal.x) > 0.5 ? hit.z : hit.x;
    vec2 pane = vec2(along, hit.y) * vec2(10.0, 8.0);
    vec2 id = floor(pane), inside = fract(pane) - 0.5;
    float frame = step(abs(inside.x), 0.3) * step(abs(inside.y), 0.32);
    float on = step(hash(id + cell * 17.0), lit);
    vec3 lamp = mix(vec3(1.0, 0.75, 0.4), vec3(0.6, 0.8, 1.0), hash(id + 3.1));
    return vec3(0.05, 0.05, 0.07) + frame * mix(vec3(0.02, 0.03, 0.05), lamp, on);
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 eye = vec3(u.time * 0.7, 4.2, u.time * 0.5);
    vec3 ray = normalize(vec3(at.x * 0.9 + 0.6, at.y * 0.8 - 0.55, 1.3 - at.x * 0.4));
    vec3 colour = mix(vec3(0.1, 0.05, 0.12), vec3(0.01, 0.01, 0.04), clamp(ray.y * 3.0 + 0.5, 0.0, 1.0));
    vec2 cell = floor(eye.xz);
    vec2 direction = sign(ray.xz), inverse = 1.0 / ray.xz;
    float t = 0.0;
    for (int i = 0; i < 60; i++) {
        vec2 far = (cell + max(direction, 0.0) - eye.xz) * inverse;
        float leave = min(far.x, far.y);
        float tall = p.height * (0.15 + hash(cell) * hash(cell + 7.3));
        vec3 extent = vec3(0.38, tall, 0.38);
        vec3 local = eye - vec3(cell.x + 0.5, 0.0, cell.y + 0.5);
        vec3 m = 1.0 / ray, n = m * local, k = abs(m) * extent;
        vec3 t1 = -n - k, t2 = -n + k;
        float enter = max(max(t1.x, t1.y), t1.z), exit = min(min(t2.x, t2.y), t2.z);
        if (enter < exit && exit > 0.0) {
            vec3 normal = -sign(ray) * step(t1.yzx, t1) * step(t1.zxy, t1);
            vec3 hit = local + ray * enter;
            float fog = exp(-0.03 * enter);
            colour = mix(colour, windows(hit, normal, cell, p.lit), fog);
            break;
        }
        float ground = -eye.y / ray.y;
        if (ray.y < 0.0 && ground < leave) {
            vec2 street = abs(fract(eye.xz + ray.xz * ground) - 0.5);
            float line = smoothstep(0.48, 0.49, max(street.x, street.y));
            colour = mix(colour, vec3(0.04) + line * vec3(0.5, 0.4, 0.1), exp(-0.03 * ground));
            break;
        }
        if (far.x < far.y)
            cell.x += direction.x;
        else
            cell.y += direction.y;
        t = leave;
        if (t > 45.0 || (ray.y > 0.0 && eye.y + ray.y * t > 7.0))
            break;
    }
    return vec4(pow(colour, vec3(0.7)), 1.0);
}
