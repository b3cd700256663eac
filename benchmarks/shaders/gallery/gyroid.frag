// A gyroid cut out of a sphere, lit from two sides.

float gyroid(vec3 q, float frequency, float thickness) {
    q *= frequency;
    return (abs(dot(sin(q), cos(q.yzx))) - thickness * frequency) / (frequency * 1.6);
}

float scene(vec3 q) {
    float ball = length(q) - 1.0;
    float lattice = gyroid(q + vec3(0.0, u.time * 0.1, 0.0), p.frequency, p.thickness);
    return max(ball, lattice);
}

vec3 normalAt(vec3 q) {
    vec3 sum = vec3(0.0);
    for (int i = 0; i < 4; i++) {
        vec3 e = 0.5773 * (2.0 * vec3(((i + 3) >> 1) & 1, (i >> 1) & 1, i & 1) - 1.0);
        sum += e * scene(q + 0.001 * e);
    }
    return normalize(sum);
}

vec2 rotated(vec2 q, float angle) {
    float c = cos(angle), s = sin(angle);
    return vec2(c * q.x - s * q.y, s * q.x + c * q.y);
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * u.resolution - 0.5 * u.resolution) / u.resolution.y;
    vec3 eye = vec3(0.0, 0.0, -3.0), ray = normalize(vec3(at, 1.3));
    eye.xz = rotated(eye.xz, u.time * 0.3);
    ray.xz = rotated(ray.xz, u.time * 0.3);
    vec3 background = vec3(0.05, 0.06, 0.09) + 0.08 * (1.0 - length(at));
    float b = dot(eye, ray), c = dot(eye, eye) - 1.02;
    float reach = b * b - c;
    if (reach < 0.0)
        return vec4(background, 1.0);
    float t = -b - sqrt(reach);
    bool found = false;
    for (int i = 0; i < 70; i++) {
        float d = scene(eye + ray * t);
        if (d < 0.001) {
            found = true;
            break;
        }
        t += d;
        if (t > 4.2)
            break;
    }
    if (!found)
        return vec4(background, 1.0);
    vec3 hit = eye + ray * t;
    vec3 normal = normalAt(hit);
    vec3 key = normalize(vec3(0.6, 0.8, -0.5)), rim = normalize(vec3(-0.7, 0.1, 0.6));
    vec3 colour = vec3(0.9, 0.45, 0.25) * max(dot(normal, key), 0.0);
    colour += vec3(0.1, 0.3, 0.7) * max(dot(normal, rim), 0.0);
    float gloss = pow(max(dot(reflect(ray, normal), key), 0.0), 24.0);
    colour += 0.4 * gloss + 0.06;
    colour *= smoothstep(0.1, 1.0, length(hit));
    return vec4(sqrt(colour), 1.0);
}
