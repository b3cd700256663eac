vec2 hash2(vec2 c) {
    vec3 q = fract(vec3(c.xyx) * vec3(0.1031, 0.1030, 0.0973));
    q += dot(q, q.yzx + 33.33);
    return fract((q.xx + q.yz) * q.zy);
}

vec4 shade(vec2 uv) {
    vec2 q = uv * p.cells;
    vec2 cell = floor(q), f = fract(q);
    float nearest = 8.0, second = 8.0;
    vec2 id = vec2(0.0);
    for (int y = -1; y <= 1; y++) {
        for (int x = -1; x <= 1; x++) {
            vec2 offset = vec2(x, y);
            vec2 h = hash2(cell + offset);
            vec2 r = offset + 0.5 + 0.4 * sin(u.time + 6.2831 * h) - f;
            float d = dot(r, r);
            if (d < nearest) {
                second = nearest;
                nearest = d;
                id = cell + offset;
            } else if (d < second) {
                second = d;
            }
        }
    }
    float border = smoothstep(0.0, p.edge, sqrt(second) - sqrt(nearest));
    vec3 colour = 0.5 + 0.5 * cos(vec3(0, 2, 4) + hash2(id).x * 6.0);
    return vec4(colour * border, 1.0);
}
