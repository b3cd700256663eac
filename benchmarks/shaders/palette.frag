const vec3 colours[8] = vec3[8](
    vec3(0.02, 0.02, 0.10), vec3(0.15, 0.05, 0.35), vec3(0.45, 0.10, 0.40),
    vec3(0.80, 0.25, 0.30), vec3(0.95, 0.55, 0.25), vec3(1.00, 0.85, 0.45),
    vec3(0.60, 0.80, 0.60), vec3(0.10, 0.40, 0.55));

vec3 paletteAt(float x) {
    x = fract(x) * 8.0;
    int i = int(x);
    return mix(colours[i & 7], colours[(i + 1) & 7], x - float(i));
}

vec4 shade(vec2 uv) {
    vec2 c = 0.7885 * vec2(cos(u.time * p.speed + 2.0), sin(u.time * p.speed + 2.0));
    vec2 z = (uv - 0.5) * u.resolution / u.resolution.y * 3.0;
    float trap = 10.0;
    for (int i = 0; i < 48; i++) {
        z = vec2(z.x * z.x - z.y * z.y, 2.0 * z.x * z.y) + c;
        float square = dot(z, z);
        trap = min(trap, square);
        if (square > 64.0) break;
    }
    return vec4(paletteAt(sqrt(trap) * 1.5), 1.0);
}
