// Two gratings and a zone plate interfere; the picture is only fine lines.

float grating(vec2 q, float angle, float count, float phase) {
    vec2 d = vec2(cos(angle), sin(angle));
    return 0.5 + 0.5 * sin(dot(q, d) * count + phase);
}

float zonePlate(vec2 q, float count) {
    return 0.5 + 0.5 * cos(dot(q, q) * count);
}

float radial(vec2 q, float count, float phase) {
    return 0.5 + 0.5 * sin(atan(q.y, q.x) * count + phase);
}

float sharpened(float x, float hardness) {
    return smoothstep(0.5 - hardness, 0.5 + hardness, x);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float t = u.time * p.drift;
    vec2 a = 0.35 * vec2(sin(t * 0.7), cos(t * 0.9));
    vec2 b = -0.3 * vec2(cos(t * 0.5), sin(t * 0.8));
    float rings1 = sharpened(0.5 + 0.5 * sin(length(q - a) * p.lines), 0.3);
    float rings2 = sharpened(0.5 + 0.5 * sin(length(q - b) * p.lines * 1.03), 0.3);
    float spokes1 = sharpened(radial(q - a, 48.0, t), 0.3);
    float spokes2 = sharpened(radial(q - b, 50.0, -t * 1.3), 0.3);
    float lines1 = grating(q, 0.3 + 0.05 * sin(t), p.lines, t);
    float lines2 = grating(q, 0.34, p.lines * 1.05, -t);
    float lines3 = grating(q, 1.87, p.lines * 0.97, t * 0.7);
    float circle = rings1 * rings2;
    float fan = spokes1 * spokes2;
    float weave = lines1 * lines2 + lines2 * lines3 * 0.5;
    float plate = zonePlate(q - 0.5 * (a + b), p.lines * 0.8);
    float where_ = mod(t * 0.25, 4.0);
    float w0 = clamp(1.0 - abs(where_ - 0.0), 0.0, 1.0) + clamp(where_ - 3.0, 0.0, 1.0);
    float w1 = clamp(1.0 - abs(where_ - 1.0), 0.0, 1.0);
    float w2 = clamp(1.0 - abs(where_ - 2.0), 0.0, 1.0);
    float w3 = clamp(1.0 - abs(where_ - 3.0), 0.0, 1.0);
    float value = circle * w0 + fan * w1 + weave * w2 + plate * w3;
    vec3 ink = mix(vec3(0.1, 0.12, 0.2), vec3(0.75, 0.2, 0.15), smoothstep(0.0, 1.2, length(q - a)));
    vec3 paper = mix(vec3(0.97, 0.95, 0.9), vec3(0.85, 0.9, 0.95), 0.5 + 0.5 * sin(q.y * 3.0 + t));
    vec3 colour = mix(paper, ink, clamp(value, 0.0, 1.0));
    float frame = max(abs(uv.x - 0.5), abs(uv.y - 0.5));
    colour *= smoothstep(0.5, 0.485, frame);
    return vec4(colour, 1.0);
}
