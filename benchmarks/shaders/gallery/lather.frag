// Bubbles: the first and second distance of cells in three dimensions, cut by a moving plane.

vec3 hash3(vec3 q) {
    q = fract(q * vec3(0.1031, 0.11369, 0.13787));
    q += dot(q, q.yxz + 19.19);
    return fract(vec3((q.x + q.y) * q.z, (q.x + q.z) * q.y, (q.y + q.z) * q.x));
}

vec3 worley(vec3 q) {
    vec3 cell = floor(q), f = fract(q);
    float first = 8.0, second = 8.0, id = 0.0;
    for (int z = -1; z <= 1; z++)
        for (int y = -1; y <= 1; y++)
            for (int x = -1; x <= 1; x++) {
                vec3 offset = vec3(x, y, z);
                vec3 random = hash3(cell + offset);
                vec3 r = offset + random - f;
                float d = dot(r, r);
                if (d < first) {
                    second = first;
                    first = d;
                    id = random.x + random.y * 7.0;
                } else {
                    second = min(second, d);
                }
            }
    return vec3(sqrt(first), sqrt(second), id);
}

vec3 film(float x) {
    return 0.5 + 0.5 * cos(6.2831853 * (x * vec3(1.0, 1.15, 1.3) + vec3(0.0, 0.1, 0.25)));
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    vec3 colour = vec3(0.12, 0.2, 0.32) * (1.2 - length(q));
    float scale = p.size * 2.2;
    for (int layer = 0; layer < 3; layer++) {
        vec3 at = vec3(q * scale + float(layer) * 3.7, time * (1.0 - 0.25 * float(layer)) + float(layer) * 11.0);
        at.y -= time * 0.7;
        vec3 w = worley(at);
        float edge = w.y - w.x;
        float wall = smoothstep(0.12, 0.0, edge);
        float inner = smoothstep(0.5, 0.0, w.x);
        float bright = smoothstep(0.1, 0.04, length(vec2(w.x - 0.25, edge - 0.3)));
        vec3 tint = film(w.z + edge * 1.5 + time * 0.1);
        float strength = 0.45 + 0.25 * float(layer);
        colour = mix(colour, tint * 0.7 + 0.3, wall * strength);
        colour += inner * 0.08 * tint * strength + bright * 0.35 * strength;
        scale *= 0.62;
    }
    colour *= 1.0 - 0.35 * dot(q, q);
    return vec4(colour, 1.0);
}
