vec4 shade(vec2 uv) {
    vec2 c = (uv - 0.5) * u.resolution / u.resolution.y * p.zoom + vec2(-0.6, 0.0);
    vec2 z = vec2(0.0);
    int steps = 0;
    for (int i = 0; i < 96; i++) {
        z = vec2(z.x * z.x - z.y * z.y, 2.0 * z.x * z.y) + c;
        if (dot(z, z) > 16.0) break;
        steps++;
    }
    float smoothed = float(steps) - log2(max(log2(max(dot(z, z), 1.01)), 0.01)) + 2.0;
    float inside = steps == 96 ? 0.0 : 1.0;
    return vec4((0.5 + 0.5 * cos(3.0 + smoothed * 0.15 + vec3(0.0, 0.6, 1.0))) * inside, 1.0);
}
