// Quarter circles on turned tiles make endless curves; light runs along them.

float hash(vec2 q) {
    return fract(sin(dot(q, vec2(27.16898, 38.90563))) * 5151.5473453);
}

struct Curve {
    float distance;
    float along;
};

Curve arc(vec2 f, vec2 corner, float direction) {
    vec2 d = f - corner;
    Curve c;
    c.distance = abs(length(d) - 0.5);
    c.along = atan(abs(d.y), abs(d.x)) / 1.5707963 * direction;
    return c;
}

vec3 paint(float phase) {
    return 0.5 + 0.5 * cos(6.2831853 * (phase + vec3(0.0, 0.1, 0.2)));
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0) * p.tiles;
    q += vec2(sin(u.time * 0.2), u.time * 0.3);
    vec2 cell = floor(q), f = fract(q);
    bool isTurned = hash(cell) > 0.5;
    if (isTurned)
        f.x = 1.0 - f.x;
    float parity = mod(abs(cell.x + cell.y), 2.0);
    float direction = parity > 0.5 ? 1.0 : -1.0;
    if (isTurned)
        direction = -direction;
    Curve a = arc(f, vec2(0.0, 0.0), direction);
    Curve b = arc(f, vec2(1.0, 1.0), direction);
    Curve c = a.distance < b.distance ? a : b;
    float soft = 1.5 * p.tiles / u.resolution.y;
    float body = smoothstep(p.width + soft, p.width - soft, c.distance);
    float outline = smoothstep(soft, -soft, abs(c.distance - p.width) - 0.02);
    float round_ = sqrt(max(1.0 - c.distance * c.distance / (p.width * p.width), 0.0));
    float pulse = fract(c.along * 0.5 - u.time * 0.8 + hash(cell + 4.0) * 0.0);
    float light = smoothstep(0.0, 0.5, pulse) * smoothstep(1.0, 0.5, pulse);
    vec3 ground = mix(vec3(0.09, 0.1, 0.16), vec3(0.13, 0.14, 0.2), parity);
    vec2 grid = abs(f - 0.5);
    ground += 0.04 * smoothstep(0.49, 0.5, max(grid.x, grid.y));
    float shadow = smoothstep(p.width, p.width + 0.15, c.distance);
    vec3 tube = paint(0.1 * cell.x * 0.3 + 0.07 * cell.y + u.time * 0.05) * (0.3 + 0.7 * round_);
    tube += light * round_ * 0.6;
    vec3 colour = mix(ground * (0.5 + 0.5 * shadow), tube, body);
    colour = mix(colour, vec3(0.02), outline);
    return vec4(colour, 1.0);
}
