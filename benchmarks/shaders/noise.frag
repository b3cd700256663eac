float hash(vec2 cell) {
    vec3 q = fract(vec3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

float noise(vec2 q) {
    vec2 cell = floor(q);
    vec2 f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    float a = hash(cell), b = hash(cell + vec2(1, 0));
    float c = hash(cell + vec2(0, 1)), d = hash(cell + vec2(1, 1));
    return mix(mix(a, b, f.x), mix(c, d, f.x), f.y);
}

vec4 shade(vec2 uv) {
    vec2 q = uv * p.scale + u.time;
    float n = noise(q) * 0.6 + noise(q * 2.1) * 0.4;
    return vec4(n, n * n, 1.0 - n, 1.0);
}
