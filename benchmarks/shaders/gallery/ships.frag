// Three cousins of the Mandelbrot set side by side in time: a switch chooses the formula.

vec2 squared(vec2 z) {
    return vec2(z.x * z.x - z.y * z.y, 2.0 * z.x * z.y);
}

vec2 next(vec2 z, vec2 c, int formula) {
    switch (formula) {
    case 0: return squared(abs(z)) + c;
    case 1: return squared(vec2(z.x, -z.y)) + c;
    case 2: {
        vec2 s = squared(z);
        return vec2(abs(s.x), s.y) + c;
    }
    default: {
        vec2 s = squared(z);
        return vec2(s.x * z.x - s.y * z.y, s.x * z.y + s.y * z.x) + c;
    }
    }
}

float escape(vec2 c, int formula, int rounds) {
    vec2 z = vec2(0.0);
    int i = 0;
    while (i < rounds) {
        z = next(z, c, formula);
        if (dot(z, z) > 64.0)
            break;
        i++;
    }
    if (i == rounds)
        return -1.0;
    float power = formula == 3 ? 3.0 : 2.0;
    return float(i) + 1.0 - log(0.5 * log(dot(z, z)) / log(8.0)) / log(power);
}

vec3 colours(float n) {
    float x = 0.06 * n;
    vec3 warm = 0.5 + 0.5 * cos(vec3(3.4, 4.0, 4.9) + x * 6.2831853);
    float band = 0.85 + 0.15 * cos(n * 3.1415927);
    return warm * band;
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    int panel = min(int(uv.x * 4.0), 3);
    vec2 local = vec2(fract(uv.x * 4.0), uv.y) - 0.5;
    vec2 c = local * vec2(aspect * 0.25, 1.0) * 2.0 * p.zoom;
    if (panel == 0)
        c = vec2(c.x * 0.9 - 0.4, -c.y - 0.5);
    else if (panel < 3)
        c.x -= 0.2;
    float spin = 0.1 * sin(u.time * 0.4 + float(panel));
    c = vec2(c.x * cos(spin) - c.y * sin(spin), c.x * sin(spin) + c.y * cos(spin));
    float n = escape(c, panel, int(p.rounds));
    vec3 colour = n < 0.0 ? vec3(0.02, 0.01, 0.03) : colours(n + u.time * 0.5);
    float gap = smoothstep(0.495, 0.49, abs(local.x));
    return vec4(colour * gap, 1.0);
}
