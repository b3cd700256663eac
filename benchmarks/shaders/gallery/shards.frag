// Cells with exact distances to their borders, in two passes over the neighbours.

uvec2 mixed(uvec2 v) {
    v = v * 1664525u + 1013904223u;
    v.x += v.y * 1664525u;
    v.y += v.x * 1664525u;
    v ^= v >> 16u;
    v.x += v.y * 1664525u;
    v.y += v.x * 1664525u;
    return v ^ (v >> 16u);
}

vec2 random(ivec2 cell) {
    return vec2(mixed(uvec2(cell + 1024)) >> 8u) / 16777216.0;
}

vec2 place(ivec2 cell, float time) {
    return 0.5 + 0.42 * sin(time + 6.2831853 * random(cell));
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0) * p.cells;
    ivec2 cell = ivec2(floor(q));
    vec2 f = fract(q);
    float nearest = 8.0;
    ivec2 which = ivec2(0);
    vec2 towards = vec2(0.0);
    for (int y = -1; y <= 1; y++) {
        for (int x = -1; x <= 1; x++) {
            ivec2 offset = ivec2(x, y);
            vec2 r = vec2(offset) + place(cell + offset, u.time) - f;
            float d = dot(r, r);
            if (d < nearest) {
                nearest = d;
                towards = r;
                which = offset;
            }
        }
    }
    float border = 8.0;
    for (int y = -2; y <= 2; y++) {
        for (int x = -2; x <= 2; x++) {
            ivec2 offset = which + ivec2(x, y);
            vec2 r = vec2(offset) + place(cell + offset, u.time) - f;
            vec2 between = r - towards;
            if (dot(between, between) > 0.00001)
                border = min(border, dot(0.5 * (towards + r), normalize(between)));
        }
    }
    vec2 id = random(cell + which + 77);
    vec3 glass = 0.5 + 0.5 * cos(vec3(0.0, 0.6, 1.3) + id.x * 6.0 + id.y);
    float contour = 0.5 + 0.5 * sin(border * 60.0);
    vec3 colour = glass * (0.55 + 0.3 * smoothstep(0.0, 0.5, border)) + 0.06 * contour;
    float lead = smoothstep(p.crack, p.crack + 0.02, border);
    float shine = smoothstep(0.05, 0.0, abs(border - p.crack * 0.5)) * 0.3;
    colour = mix(vec3(0.08) + shine, colour, lead);
    vec2 light = towards - vec2(0.2, -0.3);
    colour += lead * 0.25 * exp(-14.0 * dot(light, light));
    return vec4(colour, 1.0);
}
