// A map: lines of equal height that keep their width, tints by height, hills shaded.

vec2 grad(ivec2 cell) {
    uint n = uint(cell.x + 8192) * 0x9e3779b9u ^ (uint(cell.y + 8192) * 0x7f4a7c15u);
    n ^= n >> 15;
    n *= 0xd168aaadu;
    n ^= n >> 15;
    float a = float(n & 0xffffu) / 65536.0 * 6.2831853;
    return vec2(cos(a), sin(a));
}

float noise(vec2 q) {
    ivec2 c = ivec2(floor(q));
    vec2 f = fract(q), w = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float a = dot(grad(c), f), b = dot(grad(c + ivec2(1, 0)), f - vec2(1, 0));
    float d = dot(grad(c + ivec2(0, 1)), f - vec2(0, 1)), e = dot(grad(c + ivec2(1, 1)), f - vec2(1, 1));
    return mix(mix(a, b, w.x), mix(d, e, w.x), w.y);
}

float land(vec2 q) {
    float sum = 0.0, size = 0.55;
    for (int i = 0; i < 5; i++) {
        sum += size * noise(q);
        q = vec2(1.7 * q.x - 1.0 * q.y, 1.0 * q.x + 1.7 * q.y) + 3.7;
        size *= 0.45;
    }
    return sum * 1.3 + 0.35;
}

vec3 tint(float h) {
    if (h < 0.2)
        return mix(vec3(0.35, 0.6, 0.75), vec3(0.65, 0.82, 0.88), smoothstep(0.0, 0.2, h));
    if (h < 0.4)
        return mix(vec3(0.72, 0.82, 0.6), vec3(0.88, 0.88, 0.66), (h - 0.2) / 0.2);
    if (h < 0.65)
        return mix(vec3(0.88, 0.88, 0.66), vec3(0.8, 0.66, 0.48), (h - 0.4) / 0.25);
    return mix(vec3(0.8, 0.66, 0.48), vec3(0.97, 0.96, 0.95), clamp((h - 0.65) / 0.25, 0.0, 1.0));
}

float line(float x, float width) {
    float d = abs(fract(x + 0.5) - 0.5);
    float w = fwidth(x) * width;
    return smoothstep(w * 1.5, w * 0.5, d);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * p.zoom + vec2(u.time * 0.1, 1.3);
    float h = land(q);
    float e = 0.01;
    vec2 slope = vec2(land(q + vec2(e, 0.0)) - h, land(q + vec2(0.0, e)) - h) / e;
    vec3 normal = normalize(vec3(-slope * 0.35, 1.0));
    float light = dot(normal, normalize(vec3(-0.6, 0.6, 0.7)));
    vec3 colour = tint(h);
    if (h > 0.2)
        colour *= 0.62 + 0.5 * light;
    float steps = h / p.interval;
    float minor = line(steps, 0.9), major = line(steps / 5.0, 2.0);
    vec3 ink = h < 0.2 ? vec3(0.2, 0.4, 0.6) : vec3(0.45, 0.3, 0.15);
    colour = mix(colour, ink, minor * 0.45);
    colour = mix(colour, ink, major * 0.75);
    float shore = smoothstep(fwidth(h) * 2.0, 0.0, abs(h - 0.2));
    colour = mix(colour, vec3(0.1, 0.25, 0.4), shore);
    vec2 grid = vec2(line(q.x * 2.0, 0.7), line(q.y * 2.0, 0.7));
    colour = mix(colour, vec3(0.2, 0.2, 0.35), 0.3 * max(grid.x, grid.y));
    float wood = noise(q * 5.0 + 40.0);
    if (h > 0.22 && h < 0.5 && wood > 0.12) {
        vec2 f = fract(q * 22.0) - 0.5;
        float tree = smoothstep(0.28, 0.2, length(f)) * smoothstep(0.12, 0.2, wood);
        colour = mix(colour, vec3(0.25, 0.45, 0.22), tree * 0.8);
    }
    vec2 v = abs(uv - 0.5);
    float frame = max(v.x, v.y);
    colour = mix(colour, vec3(0.96, 0.94, 0.9), smoothstep(0.475, 0.478, frame));
    colour = mix(colour, vec3(0.2), smoothstep(0.004, 0.002, abs(frame - 0.472)));
    return vec4(colour, 1.0);
}
