vec2 hash2(vec2 q) {
    q = vec2(dot(q, vec2(127.1, 311.7)), dot(q, vec2(269.5, 183.3)));
    return fract(sin(q) * 43758.5453);
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0) * p.cells;
    vec2 cell = floor(q), inside = fract(q);
    float nearest = 8.0, second = 8.0;
    vec2 best = vec2(0.0);
    for (float y = -1.0; y <= 1.0; y++) {
        for (float x = -1.0; x <= 1.0; x++) {
            vec2 at = vec2(x, y);
            vec2 o = hash2(cell + at);
            o = 0.5 + 0.5 * sin(u.time + 6.2831853 * o);
            vec2 way = at + o - inside;
            float d = dot(way, way);
            if (d < nearest) {
                second = nearest;
                nearest = d;
                best = cell + at;
            } else if (d < second) {
                second = d;
            }
        }
    }
    vec2 tint = hash2(best);
    float edge = smoothstep(0.02, 0.12, sqrt(second) - sqrt(nearest));
    return vec4(edge * (0.5 + 0.5 * cos(6.28 * (tint.x + vec3(0.0, 0.3, 0.6)))), 1.0);
}
