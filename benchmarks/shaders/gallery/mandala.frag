// Rings of ornaments: each ring has its own count, shape and direction.

float hash(float n) {
    return fract(sin(n) * 43758.5453123);
}

float diamond(vec2 q, vec2 size) {
    vec2 d = abs(q) / size;
    return (d.x + d.y - 1.0) * min(size.x, size.y);
}

float ornament(vec2 q, int kind, float size) {
    switch (kind) {
    case 0: return length(q) - size * 0.45;
    case 1: return diamond(q, vec2(size * 0.5, size * 0.75));
    case 2: return abs(length(q) - size * 0.4) - size * 0.1;
    case 3: {
        float leaf = length(vec2(abs(q.x) + size * 0.35, q.y)) - size * 0.65;
        return leaf;
    }
    case 4: return max(abs(q.x), abs(q.y)) - size * 0.35;
    default: {
        float a = atan(q.y, q.x);
        return length(q) - size * (0.4 + 0.15 * cos(a * 5.0));
    }
    }
}

vec3 tint(float x) {
    return 0.5 + 0.5 * cos(6.2831853 * (x + vec3(0.0, 0.15, 0.35)));
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.1;
    float r = length(q), a = atan(q.y, q.x);
    int rings = int(p.rings);
    float soft = 3.0 / u.resolution.y;
    vec3 colour = vec3(0.96, 0.93, 0.86) * (1.0 - 0.25 * r);
    float ringWidth = 1.0 / float(rings);
    for (int i = 0; i < rings; i++) {
        float f = float(i);
        float middle = (f + 0.6) * ringWidth;
        if (abs(r - middle) > ringWidth)
            continue;
        float n = hash(f * 7.31 + 2.0);
        float count = floor(6.0 + f * 3.0 + n * 4.0);
        float direction = (i & 1) == 0 ? 1.0 : -1.0;
        float turned = a + direction * u.time * p.speed * (0.2 + 0.5 * n);
        float sector = 6.2831853 / count;
        float local = mod(turned + 62.831853, sector) - 0.5 * sector;
        vec2 at = vec2(local * middle, r - middle);
        float size = min(ringWidth, sector * middle) * 0.95;
        int kind = int(hash(f * 3.7 + 0.5) * 6.0);
        float d = ornament(at, kind, size);
        vec3 paint = tint(n + 0.1 * f);
        float line = smoothstep(soft * 2.0, 0.0, abs(d));
        float body = smoothstep(soft, -soft, d);
        colour = mix(colour, paint, body);
        float inner = ornament(at * 1.9, (kind + 2) % 6, size) / 1.9;
        colour = mix(colour, tint(n + 0.5), smoothstep(soft, -soft, inner) * 0.85);
        colour = mix(colour, vec3(0.15, 0.1, 0.15), line * 0.9);
        float circle = abs(r - (f + 1.1) * ringWidth);
        colour = mix(colour, vec3(0.2, 0.12, 0.15), smoothstep(soft * 1.5, 0.0, circle - 0.002));
    }
    float shading = 0.9 + 0.1 * sin(r * 60.0);
    colour *= mix(1.0, shading, smoothstep(1.0, 1.15, r));
    return vec4(colour, 1.0);
}
