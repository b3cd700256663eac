// Newton's method on a polynomial with moving roots: which root is reached, and how fast.

vec2 times(vec2 a, vec2 b) {
    return vec2(a.x * b.x - a.y * b.y, a.x * b.y + a.y * b.x);
}

vec2 over(vec2 a, vec2 b) {
    return vec2(a.x * b.x + a.y * b.y, a.y * b.x - a.x * b.y) / max(dot(b, b), 0.000001);
}

vec4 shade(vec2 uv) {
    vec2 z = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0 * p.zoom;
    int count = int(p.roots);
    vec2 roots[8];
    for (int i = 0; i < 8; i++) {
        float f = float(i);
        float a = 6.2831853 * f / float(count) + 0.2 * sin(u.time * 0.3 + f);
        float r = 1.0 + 0.25 * sin(u.time * 0.5 + f * 2.4);
        roots[i] = r * vec2(cos(a), sin(a));
    }
    vec2 start = z;
    int rounds = 0;
    float smooth_ = 0.0;
    for (; rounds < 28; rounds++) {
        vec2 value = vec2(1.0, 0.0), slope = vec2(0.0, 0.0);
        for (int i = 0; i < count; i++) {
            vec2 factor = z - roots[i];
            slope = times(slope, factor) + value;
            value = times(value, factor);
        }
        vec2 move = over(value, slope);
        z -= move;
        float size = dot(move, move);
        smooth_ += exp(-1.0 / max(sqrt(size), 0.001));
        if (size < 0.0000001)
            break;
    }
    int which = 0;
    float nearest = 100.0;
    for (int i = 0; i < count; i++) {
        vec2 d = z - roots[i];
        float size = dot(d, d);
        if (size < nearest) {
            nearest = size;
            which = i;
        }
    }
    vec3 paint = 0.55 + 0.45 * cos(vec3(0.0, 2.0, 4.0) + float(which) * 1.35);
    float depth = float(rounds) / 28.0;
    vec3 colour = paint * (1.0 - 0.75 * sqrt(depth));
    colour += 0.06 * cos(smooth_ * 8.0);
    for (int i = 0; i < count; i++) {
        float d = length(start - roots[i]);
        colour = mix(colour, vec3(1.0), smoothstep(0.035, 0.025, d));
        colour = mix(colour, vec3(0.0), smoothstep(0.006, 0.0, abs(d - 0.035)));
    }
    return vec4(colour, 1.0);
}
