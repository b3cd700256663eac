float band(float d, float at, float width) {
    return smoothstep(at - width, at, d) - smoothstep(at, at + width, d);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * 2.0 * u.resolution / u.resolution.y;
    vec3 sum = vec3(0.0);
    float d = length(q), a = atan(q.y, q.x);
    for (int i = 0; i < 12; i++) {
        float at = 0.08 + float(i) * 0.075;
        float wobble = 0.02 * sin(a * (3.0 + float(i)) + u.time * (1.0 + 0.1 * float(i)));
        float ring = band(d + wobble, at, p.width);
        float dash = smoothstep(-0.1, 0.1, sin(a * 8.0 + float(i) * 1.7 - u.time));
        float cut = smoothstep(0.0, 0.3, abs(mod(a + float(i) * 0.5 + 12.0, 1.0) - 0.5));
        sum += ring * mix(0.3, 1.0, dash) * cut * (0.5 + 0.5 * cos(float(i) * 0.55 + vec3(0.0, 2.1, 4.2)));
    }
    return vec4(sqrt(sum), 1.0);
}
