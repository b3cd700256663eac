// Noise whose place is moved by noise whose place is moved by noise.

vec2 grad(vec2 cell) {
    float n = fract(sin(dot(cell, vec2(41.3, 289.1))) * 45758.5453) * 6.2831853;
    return vec2(cos(n), sin(n));
}

float noise(vec2 q) {
    vec2 cell = floor(q), f = q - cell;
    vec2 w = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float a = dot(grad(cell), f);
    float b = dot(grad(cell + vec2(1.0, 0.0)), f - vec2(1.0, 0.0));
    float c = dot(grad(cell + vec2(0.0, 1.0)), f - vec2(0.0, 1.0));
    float d = dot(grad(cell + vec2(1.0, 1.0)), f - vec2(1.0, 1.0));
    return mix(mix(a, b, w.x), mix(c, d, w.x), w.y);
}

float fbm(vec2 q) {
    mat2 m = mat2(vec2(1.6, 1.2), vec2(-1.2, 1.6));
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 4; i++) {
        sum += size * noise(q);
        q = m * q;
        size *= 0.5;
    }
    return sum;
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * p.scale;
    float time = u.time * p.flow;
    vec2 first = vec2(fbm(q + vec2(0.0, time)), fbm(q + vec2(5.2, 1.3 - time)));
    vec2 second = vec2(fbm(q + 4.0 * first + vec2(1.7, 9.2) + 0.5 * time),
                           fbm(q + 4.0 * first + vec2(8.3, 2.8) - 0.3 * time));
    float value = fbm(q + 4.0 * second);
    vec3 colour = mix(vec3(0.12, 0.05, 0.2), vec3(0.85, 0.25, 0.3), smoothstep(-0.5, 0.5, value));
    colour = mix(colour, vec3(0.98, 0.8, 0.5), smoothstep(0.2, 1.2, length(second) * 1.6));
    colour = mix(colour, vec3(0.1, 0.35, 0.5), smoothstep(0.0, 0.5, first.y));
    float fold = smoothstep(0.0, 0.15, abs(value));
    colour *= 0.6 + 0.4 * fold;
    colour += 0.15 * pow(max(1.0 - abs(second.x - 0.1) * 3.0, 0.0), 3.0);
    return vec4(colour, 1.0);
}
