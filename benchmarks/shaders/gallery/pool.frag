// Light on the floor of a pool: bent rays gather, tiles shimmer underneath.

float caustic(vec2 q, float time) {
    vec2 at = mod(q * 6.2831853, vec2(6.2831853)) - 250.0;
    vec2 i = at;
    float sum = 1.0;
    for (int n = 0; n < 5; n++) {
        float t = time * (1.0 - 3.5 / float(n + 1));
        i = at + vec2(cos(t - i.x) + sin(t + i.y), sin(t - i.y) + cos(t + i.x));
        sum += 1.0 / length(vec2(at.x / (sin(i.x + t) * 200.0), at.y / (cos(i.y + t) * 200.0)));
    }
    sum /= 5.0;
    sum = 1.17 - pow(sum, 1.4);
    return pow(abs(sum), 8.0);
}

vec2 slope(vec2 q, float time) {
    vec2 sum = vec2(0.0);
    for (int i = 0; i < 6; i++) {
        float f = float(i) + 1.0;
        vec2 d = vec2(cos(f * 2.4), sin(f * 2.4));
        sum += d * cos(dot(q, d) * (3.0 + 2.0 * f) + time * (1.0 + 0.3 * f)) / f;
    }
    return sum;
}

vec3 tiles(vec2 q) {
    vec2 cell = floor(q), f = abs(fract(q) - 0.5);
    float grout = smoothstep(0.46, 0.48, max(f.x, f.y));
    float tone = 0.9 + 0.1 * sin(cell.x * 12.7 + cell.y * 7.3);
    vec3 paint = mod(cell.x + cell.y * 3.0 + 50.0, 5.0) < 1.0 ? vec3(0.15, 0.45, 0.6) : vec3(0.35, 0.7, 0.78);
    return mix(paint * tone, vec3(0.75, 0.85, 0.85), grout);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv + 0.05) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.ripple;
    vec2 bend = slope(q * 2.0, time) * 0.02 * p.depth;
    vec3 base = tiles((q + bend) * 10.0 + 10.0);
    float light = caustic(q * 1.5 + bend, time * 0.5 + 23.0);
    float red = caustic(q * 1.5 + bend * 1.3 + 0.004, time * 0.5 + 23.0);
    vec3 rays = vec3(red, light, light * 0.9);
    vec3 colour = base * (0.55 + rays * 0.7) + vec3(0.0, 0.15, 0.2) * p.depth * 0.4;
    vec3 normal = normalize(vec3(-bend * 20.0, 1.0));
    vec3 view = normalize(vec3(uv - 0.5, 1.2));
    float shine = pow(max(dot(reflect(-view, normal), normalize(vec3(0.3, 0.5, 0.8))), 0.0), 60.0);
    colour += shine * 0.5;
    return vec4(clamp(colour, 0.0, 1.0), 1.0);
}
