// Waves in seven directions add up to a pattern that never repeats.

float wave(vec2 q, float angle, float phase) {
    return cos(q.x * cos(angle) + q.y * sin(angle) + phase);
}

float crystal(vec2 q, int count, float time) {
    float sum = 0.0;
    for (int i = 0; i < count; i++)
        sum += wave(q, 3.1415927 * float(i) / float(count), time * (1.0 + 0.1 * float(i & 3)));
    return sum;
}

float folded(float x) {
    float k = floor(x);
    float v = x - k;
    return mod(abs(k), 2.0) < 0.5 ? v : 1.0 - v;
}

vec3 heat(float x) {
    float r = smoothstep(0.0, 0.55, x);
    float g = smoothstep(0.25, 0.8, x);
    float b = smoothstep(0.55, 1.0, x) + 0.35 * smoothstep(0.0, 0.2, x) * smoothstep(0.5, 0.2, x);
    return vec3(r, g, b);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float turn = u.time * 0.05;
    mat2 m = mat2(vec2(cos(turn), sin(turn)), vec2(-sin(turn), cos(turn)));
    q = m * q;
    int count = int(p.waves);
    vec2 at = q * p.zoom;
    float here = crystal(at, count, u.time * 0.5);
    float value = folded(0.5 * here + 0.5);
    float e = 0.05;
    float dx = crystal(at + vec2(e, 0.0), count, u.time * 0.5) - here;
    float dy = crystal(at + vec2(0.0, e), count, u.time * 0.5) - here;
    vec3 normal = normalize(vec3(-dx, -dy, 0.12));
    float light = max(dot(normal, normalize(vec3(0.5, 0.6, 0.7))), 0.0);
    vec3 colour = heat(value) * (0.35 + 0.75 * light);
    float ring = smoothstep(0.02, 0.0, abs(fract(here) - 0.5) * 0.1);
    colour = mix(colour, vec3(0.02, 0.05, 0.1), 0.5 * ring);
    colour += 0.4 * pow(light, 30.0);
    float edge = length(q);
    colour *= smoothstep(0.95, 0.6, edge);
    return vec4(colour, 1.0);
}
