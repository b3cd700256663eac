float hash1(float n) {
    return fract(sin(n * 91.3458) * 47453.5453);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * u.resolution / u.resolution.y;
    float total = 0.0;
    vec2 bend = vec2(0.0);
    for (int i = 0; i < 12; i++) {
        float k = float(i) + 1.0;
        float scale = p.drops + k * 1.5;
        vec2 r = q * vec2(scale, scale * 0.4);
        float column = floor(r.x);
        r.y += u.time * (0.5 + hash1(column + k * 17.0)) + hash1(column * 3.1 + k);
        float row = floor(r.y);
        vec2 inside = fract(r) - 0.5;
        float wave = sin((hash1(row + column) + inside.y) * 6.2831853) * 0.2;
        if (hash1(row * 7.7 + column * 1.3 + k) > 0.4) {
            float d = length((inside - vec2(wave, 0.0)) * vec2(1.0, 0.4));
            float drop = smoothstep(0.12, 0.02, d);
            float trail = smoothstep(0.05, 0.0, abs(inside.x - wave)) * smoothstep(-0.1, 0.5, inside.y);
            total += drop + 0.3 * trail;
            bend += inside * drop;
        }
    }
    vec3 back = mix(vec3(0.1, 0.15, 0.25), vec3(0.6, 0.5, 0.4), uv.y + bend.y * 0.5);
    return vec4(back + total * 0.15 * vec3(0.8, 0.9, 1.0), 1.0);
}
