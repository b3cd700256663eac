// Layers of stars that fly towards the eye; each cell looks at its eight neighbours.

float hash(vec2 q) {
    q = fract(q * vec2(0.12334, 0.45621));
    q += dot(q, q + 4.532);
    return fract(q.x * q.y * 3.1);
}

mat2 rotation(float a) {
    float s = sin(a), c = cos(a);
    return mat2(vec2(c, s), vec2(-s, c));
}

float star(vec2 q, float flare) {
    float d = length(q);
    float m = 0.03 / max(d, 0.001);
    float rays = max(0.0, 1.0 - abs(q.x * q.y * 1000.0));
    m += rays * flare;
    q = rotation(0.7853982) * q;
    rays = max(0.0, 1.0 - abs(q.x * q.y * 1000.0));
    m += rays * 0.3 * flare;
    return m * smoothstep(0.9, 0.2, d);
}

vec3 layer(vec2 q, float time) {
    vec3 colour = vec3(0.0);
    vec2 f = fract(q) - 0.5, cell = floor(q);
    for (int y = -1; y <= 1; y++) {
        for (int x = -1; x <= 1; x++) {
            vec2 offset = vec2(x, y);
            float n = hash(cell + offset);
            float size = fract(n * 45.32);
            vec2 at = f - offset - vec2(n, fract(n * 34.0)) + 0.5;
            float light = star(at, smoothstep(0.9, 1.0, size) * 0.6);
            vec3 tint = sin(vec3(0.2, 0.3, 0.9) * fract(n * 23.452) * 12.32) * 0.5 + 0.5;
            tint = tint * vec3(1.0, 0.35, 1.0 + size) + vec3(0.2, 0.2, 0.1) * 2.0;
            float twinkle = 0.7 + 0.3 * sin(time * 3.0 + n * 6.2831853);
            colour += light * size * tint * twinkle;
        }
    }
    return colour;
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * p.speed;
    vec2 steer = 0.3 * vec2(sin(time * 2.2), cos(time * 2.2));
    q = rotation(time) * q;
    vec3 colour = vec3(0.0);
    int layers = int(p.layers);
    for (int i = 0; i < layers; i++) {
        float f = float(i) / float(layers);
        float depth = fract(f + time);
        float scale = mix(18.0, 0.6, depth);
        float fade = depth * smoothstep(1.0, 0.9, depth);
        colour += layer(q * scale + f * 453.2 - steer * depth, u.time) * fade;
    }
    float haze = 0.05 / (0.2 + length(q - steer * 0.2));
    colour += haze * vec3(0.3, 0.2, 0.5);
    return vec4(1.0 - exp(-colour), 1.0);
}
