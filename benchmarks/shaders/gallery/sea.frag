// Waves as a sum of turned sines whose argument the wave before has bent.

float waves(vec2 q, int count, float time, float choppy) {
    float sum = 0.0, weight = 0.0, size = 1.0, frequency = 1.0, angle = 0.0, speed = 1.6;
    for (int i = 0; i < count; i++) {
        vec2 direction = vec2(sin(angle), cos(angle));
        float x = dot(direction, q) * frequency + time * speed;
        float wave = exp(sin(x) - 1.0);
        float slope = wave * cos(x);
        q -= direction * slope * size * 0.35 * choppy;
        sum += wave * size;
        weight += size;
        size *= 0.8;
        frequency *= 1.2;
        speed *= 1.07;
        angle += 1.23;
    }
    return sum / weight;
}

float march(vec3 eye, vec3 ray, float depth, float time, float choppy) {
    float top = -eye.y / ray.y, bottom = (-depth - eye.y) / ray.y;
    float t = top;
    for (int i = 0; i < 24; i++) {
        vec3 q = eye + ray * t;
        float level = waves(q.xz * 0.5, 7, time, choppy) * depth - depth;
        if (q.y < level + 0.01)
            return t;
        t += (q.y - level) * 0.9;
        if (t > bottom)
            return bottom;
    }
    return t;
}

vec3 heaven(vec3 ray, vec3 sun) {
    float up = max(ray.y, 0.0);
    vec3 blue = vec3(0.25, 0.45, 0.8) * (1.0 - 0.5 * up);
    vec3 low = vec3(0.95, 0.75, 0.55);
    vec3 colour = mix(low, blue, pow(up, 0.45));
    float close = max(dot(ray, sun), 0.0);
    return colour + vec3(1.0, 0.85, 0.6) * (pow(close, 600.0) * 8.0 + 0.25 * pow(close, 12.0));
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 eye = vec3(u.time * 0.3, 1.8, 1.0), ray = normalize(vec3(at.x, at.y - 0.15, 1.5));
    vec3 sun = normalize(vec3(0.2, 0.22, 1.0));
    float time = u.time * p.tide;
    if (ray.y > -0.01)
        return vec4(sqrt(heaven(ray, sun)), 1.0);
    float t = march(eye, ray, 1.0, time, p.choppy);
    vec3 hit = eye + ray * t;
    float e = 0.01 + 0.002 * t;
    float h = waves(hit.xz * 0.5, 16, time, p.choppy);
    float hx = waves((hit.xz + vec2(e, 0.0)) * 0.5, 16, time, p.choppy);
    float hz = waves((hit.xz + vec2(0.0, e)) * 0.5, 16, time, p.choppy);
    vec3 normal = normalize(vec3(h - hx, e, h - hz));
    normal = normalize(mix(normal, vec3(0.0, 1.0, 0.0), 0.8 * min(1.0, sqrt(t * 0.01))));
    float fresnel = 0.04 + 0.96 * pow(1.0 - max(dot(-ray, normal), 0.0), 5.0);
    vec3 mirror = reflect(ray, normal);
    mirror.y = abs(mirror.y);
    vec3 deep = vec3(0.01, 0.08, 0.11) * (0.3 + 1.2 * h);
    vec3 colour = fresnel * heaven(mirror, sun) + deep * (1.0 - fresnel);
    return vec4(sqrt(colour / (1.0 + 0.3 * colour)), 1.0);
}
