float petal(float angle, float radius, float count, float phase) {
    float sector = 6.2831853 / count;
    float a = mod(angle + phase + 31.4159265, sector) - sector * 0.5;
    float edge = 0.35 + 0.15 * cos(a * count);
    return smoothstep(edge, edge - 0.02, radius) * smoothstep(0.04, 0.06, abs(a) * radius);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * 2.0 * u.resolution / u.resolution.y;
    vec3 sum = vec3(0.02, 0.02, 0.05);
    for (float k = 0.0; k < 12.0; k++) {
        vec2 middle = 0.55 * vec2(cos(k * 2.399963), sin(k * 2.399963)) * sqrt(k / 12.0) * 1.6;
        vec2 r = q - middle;
        float angle = atan(r.y, r.x);
        float radius = length(r) * (1.4 + 0.3 * sin(k));
        float inside = petal(angle, radius, p.petals, u.time * p.turn + k);
        vec3 colour = 0.5 + 0.5 * cos(k * 0.7 + vec3(0.0, 2.0, 4.0));
        float heart = smoothstep(0.12, 0.1, radius);
        sum = mix(sum, colour * (0.4 + radius), inside);
        sum = mix(sum, vec3(0.95, 0.8, 0.3), heart);
    }
    return vec4(sum, 1.0);
}
