// Light around a heavy body: rays are bent step by step, and cross a turning disc.

float hash(vec2 q) {
    return fract(sin(dot(q, vec2(12.9898, 78.233))) * 43758.5453);
}

float noise(vec2 q) {
    vec2 c = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(c), hash(c + vec2(1, 0)), f.x), mix(hash(c + vec2(0, 1)), hash(c + vec2(1, 1)), f.x), f.y);
}

vec3 sky(vec3 ray) {
    vec2 q = vec2(atan(ray.z, ray.x), asin(clamp(ray.y, -1.0, 1.0)));
    vec3 colour = vec3(0.0);
    for (int i = 0; i < 3; i++) {
        float scale = 30.0 + 40.0 * float(i);
        vec2 cell = floor(q * scale);
        float n = hash(cell + float(i) * 7.0);
        vec2 f = fract(q * scale) - 0.5;
        colour += step(0.93, n) * smoothstep(0.25, 0.0, length(f)) * mix(vec3(0.7, 0.8, 1.0), vec3(1.0, 0.8, 0.6), fract(n * 77.0));
    }
    float band = exp(-8.0 * abs(q.y + 0.2 * sin(q.x)));
    return colour + band * vec3(0.12, 0.1, 0.16) * (0.5 + noise(q * 6.0));
}

vec4 disc(vec3 hit, vec3 ray, float time) {
    float r = length(hit.xz);
    if (r < 0.75 || r > 2.3)
        return vec4(0.0);
    float angle = atan(hit.z, hit.x);
    float turned = angle - time * 1.6 / (r * sqrt(r));
    float streak = noise(vec2(r * 9.0, 3.0)) * 0.5 + noise(vec2(r * 22.0, turned * 1.5 + 10.0)) * 0.3 +
                   noise(vec2(cos(turned), sin(turned)) * 4.0 * r) * 0.4;
    float edge = smoothstep(0.75, 0.95, r) * smoothstep(2.3, 1.4, r);
    vec3 along = normalize(vec3(-hit.z, 0.0, hit.x));
    float doppler = 1.0 + 0.75 * dot(along, -ray) / sqrt(r);
    float hot = edge * streak * pow(max(doppler, 0.1), 3.0);
    vec3 paint = mix(vec3(1.0, 0.35, 0.08), vec3(1.0, 0.85, 0.65), clamp(hot * 0.7 + (1.3 - r) * 0.6, 0.0, 1.0));
    return vec4(paint * hot * 1.8, clamp(edge * streak * 1.2, 0.0, 1.0));
}

vec4 shade(vec2 uv) {
    vec2 at = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float a = 0.1 * u.time;
    vec3 eye = vec3(4.2 * sin(a), 4.2 * p.tilt, 4.2 * cos(a));
    vec3 forward = normalize(-eye), side = normalize(cross(forward, vec3(0.1, 1.0, 0.0)));
    vec3 up = cross(side, forward);
    vec3 velocity = normalize(at.x * side + at.y * up + 1.9 * forward);
    vec3 position = eye;
    vec3 colour = vec3(0.0);
    float clear = 1.0;
    bool isLost = false;
    for (int i = 0; i < 60; i++) {
        float r2 = dot(position, position);
        float r = sqrt(r2);
        if (r < 0.36) {
            isLost = true;
            break;
        }
        if (r > 6.0 && dot(position, velocity) > 0.0)
            break;
        float step_ = clamp(0.16 * r, 0.03, 0.4);
        vec3 turn = cross(position, velocity);
        vec3 pull = -1.5 * p.mass * dot(turn, turn) * position / (r2 * r2 * r);
        velocity = normalize(velocity + pull * step_ * 1.4);
        vec3 next = position + velocity * step_;
        if (position.y * next.y < 0.0) {
            vec3 hit = mix(position, next, position.y / (position.y - next.y));
            vec4 d = disc(hit, velocity, u.time);
            colour += d.xyz * clear;
            clear *= 1.0 - d.w;
            if (clear < 0.02)
                break;
        }
        position = next;
    }
    if (!isLost)
        colour += sky(velocity) * clear;
    return vec4(colour / (0.7 + colour) * 1.3, 1.0);
}
