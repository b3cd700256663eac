// Ink that a field without sources carries: the place of each pixel is traced back in time.

float hash(ivec2 c) {
    uint n = uint(c.x + 4096) * 374761393u + uint(c.y + 4096) * 668265263u;
    n = (n ^ (n >> 13)) * 1274126177u;
    return float((n ^ (n >> 16)) & 0xffffffu) / 16777216.0;
}

// Noise and its two derivatives.
vec3 noise(vec2 q) {
    ivec2 c = ivec2(floor(q));
    vec2 f = fract(q);
    vec2 w = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    vec2 dw = 30.0 * f * f * (f * (f - 2.0) + 1.0);
    float a = hash(c), b = hash(c + ivec2(1, 0)), d = hash(c + ivec2(0, 1)), e = hash(c + ivec2(1, 1));
    float k = a - b - d + e;
    return vec3(a + (b - a) * w.x + (d - a) * w.y + k * w.x * w.y, dw.x * (b - a + k * w.y), dw.y * (d - a + k * w.x));
}

vec2 curl(vec2 q, float time) {
    vec2 sum = vec2(0.0);
    float size = 1.0, scale = 1.5;
    for (int i = 0; i < 3; i++) {
        vec3 n = noise(q * scale + vec2(time * 0.3, -time * 0.2) * float(i + 1));
        sum += size * vec2(n.z, -n.y);
        scale *= 2.0;
        size *= 0.5;
    }
    return sum;
}

vec3 dye(vec2 q) {
    vec2 cell = floor(q * 4.0), f = fract(q * 4.0) - 0.5;
    ivec2 id = ivec2(cell);
    float n = hash(id);
    float radius = 0.2 + 0.25 * hash(id + ivec2(31, 7));
    float blob = smoothstep(radius, radius - 0.12, length(f));
    vec3 paint = vec3(0.0);
    switch (int(n * 5.0)) {
    case 0: paint = vec3(0.1, 0.2, 0.5); break;
    case 1: paint = vec3(0.75, 0.15, 0.2); break;
    case 2: paint = vec3(0.95, 0.65, 0.15); break;
    case 3: paint = vec3(0.1, 0.5, 0.45); break;
    default: paint = vec3(0.25, 0.1, 0.3); break;
    }
    return mix(vec3(0.97, 0.95, 0.9), paint, blob);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    int steps = int(p.steps);
    vec2 at = q;
    float travelled = 0.0, turned = 0.0;
    vec2 before = vec2(0.0);
    for (int i = 0; i < steps; i++) {
        vec2 v = curl(at, u.time - 0.05 * float(i));
        vec2 middle = at - 0.5 * p.strength * v;
        v = curl(middle, u.time - 0.05 * float(i) - 0.025);
        at -= p.strength * v;
        travelled += length(v) * p.strength;
        turned += before.x * v.y - before.y * v.x;
        before = v;
    }
    vec3 colour = dye(at);
    vec3 fine = dye(at * 2.3 + 7.0);
    colour = mix(colour, colour * fine, 0.45);
    colour *= 0.85 + 0.15 * cos(turned * 2.0);
    float thread_ = smoothstep(0.06, 0.0, abs(fract(at.x * 12.0 + at.y * 3.0) - 0.5));
    colour *= 1.0 - 0.18 * thread_;
    colour *= 1.05 - 0.12 * travelled;
    float paper = hash(ivec2(uv * u.resolution));
    colour -= 0.02 * paper;
    return vec4(clamp(colour, 0.0, 1.0), 1.0);
}
