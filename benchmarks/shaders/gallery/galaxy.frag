// Spiral arms in logarithmic polar coordinates, dust lanes, a bulge and many small stars.

float hash(vec2 q) {
    float h = dot(q, vec2(127.1, 311.7));
    return fract(sin(h) * 43758.5453123);
}

float noise(vec2 q) {
    vec2 cell = floor(q), f = fract(q);
    vec2 w = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(cell), hash(cell + vec2(1.0, 0.0)), w.x),
               mix(hash(cell + vec2(0.0, 1.0)), hash(cell + vec2(1.0, 1.0)), w.x), w.y);
}

float fbm(vec2 q) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += size * noise(q);
        q = vec2(1.6 * q.x + 1.2 * q.y, 1.6 * q.y - 1.2 * q.x);
        size *= 0.5;
    }
    return sum;
}

float stars(vec2 q, float density) {
    vec2 cell = floor(q);
    float n = hash(cell);
    vec2 at = vec2(hash(cell + 11.0), hash(cell + 23.0)) * 0.8 + 0.1;
    float d = length(fract(q) - at);
    return step(1.0 - density, n) * smoothstep(0.12, 0.0, d) * fract(n * 91.7);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.2;
    float tilt = 0.55;
    q = vec2(q.x * 0.94 - q.y * 0.34, q.x * 0.34 + q.y * 0.94);
    vec2 disc = vec2(q.x, q.y / tilt);
    float r = length(disc), a = atan(disc.y, disc.x);
    float turned = a + u.time * 0.15 / (0.4 + r);
    float spiral = turned * floor(p.arms) - p.wind * log(r + 0.05) * floor(p.arms) * 0.5;
    float arm = 0.5 + 0.5 * cos(spiral);
    vec2 local = r * vec2(cos(turned), sin(turned));
    float dust = fbm(local * 5.0 + 7.0 + fbm(local * 9.0));
    float disk = exp(-1.9 * r) * smoothstep(1.7, 0.4, r);
    float bulge = exp(-14.0 * dot(q, q / vec2(1.0, 0.6)));
    float bright = pow(arm, 2.0) * (0.5 + dust) * disk * 2.4;
    vec3 young = vec3(0.45, 0.6, 1.0), old = vec3(1.0, 0.8, 0.55);
    vec3 colour = mix(old, young, smoothstep(0.1, 0.7, r)) * bright;
    float lane = smoothstep(0.45, 0.75, dust) * smoothstep(0.2, 0.6, 0.5 + 0.5 * cos(spiral + 0.9));
    colour *= 1.0 - 0.75 * lane * smoothstep(0.05, 0.3, r);
    colour += old * bulge * 1.5 + vec3(1.0, 0.95, 0.85) * exp(-160.0 * dot(q, q));
    float nursery = pow(noise(local * 18.0), 8.0) * pow(arm, 3.0) * disk;
    colour += vec3(1.0, 0.25, 0.45) * nursery * 6.0;
    for (int i = 0; i < 4; i++) {
        float scale = 24.0 * pow(1.7, float(i));
        float inArm = 0.02 + 0.25 * arm * disk;
        colour += stars(local * scale + float(i) * 31.0, inArm) * mix(old, young, hash(floor(local * scale))) * 0.8;
        colour += stars(uv * scale * 2.0 + float(i) * 77.0, 0.03) * 0.35;
    }
    return vec4(1.0 - exp(-colour * 1.4), 1.0);
}
