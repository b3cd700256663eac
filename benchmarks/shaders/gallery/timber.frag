// Boards of wood: rings around a bent axis, grain, knots and seams between boards.

float hash(vec2 q) {
    return fract(sin(dot(q, vec2(12.9898, 78.233))) * 43758.5453);
}

float noise(vec2 q) {
    vec2 cell = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    float low = mix(hash(cell), hash(cell + vec2(1.0, 0.0)), f.x);
    float high = mix(hash(cell + vec2(0.0, 1.0)), hash(cell + vec2(1.0, 1.0)), f.x);
    return mix(low, high, f.y);
}

float fbm(vec2 q) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += size * noise(q);
        q *= 2.03;
        size *= 0.5;
    }
    return sum;
}

float knot(vec2 q, vec2 at, float size) {
    vec2 d = (q - at) * vec2(0.5, 1.0);
    return exp(-dot(d, d) / (size * size));
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0) * 4.0;
    q.x += u.time * 0.1;
    float board = floor(q.y);
    float shift = hash(vec2(board, 3.0)) * 7.0;
    float plank = floor((q.x + shift) * 0.35);
    vec2 local = vec2(q.x + shift, fract(q.y));
    float random = hash(vec2(board, plank));
    vec2 grain = vec2(local.x * 0.35, local.y + random * 10.0);
    vec2 knotAt = vec2((plank + 0.3 + 0.4 * random) / 0.35, 0.3 + 0.4 * hash(vec2(plank, board)));
    float bulge = knot(local, knotAt, 0.25);
    float bend = fbm(grain * vec2(1.0, 3.0)) * 0.6 + bulge * 0.9;
    float ring = fract((grain.y * 0.6 + bend) * p.rings * 0.4 + random * 5.0);
    float late = smoothstep(0.0, 0.75, ring) * (1.0 - smoothstep(0.85, 1.0, ring));
    float fibre = noise(vec2(local.x * 4.0, local.y * 160.0)) * 0.6 + noise(vec2(local.x * 9.0, local.y * 320.0)) * 0.4;
    vec3 light = mix(vec3(0.76, 0.55, 0.33), vec3(0.83, 0.66, 0.43), random);
    vec3 dark = light * vec3(0.55, 0.45, 0.38);
    vec3 colour = mix(light, dark, late * 0.7);
    colour *= 0.82 + 0.3 * fibre;
    colour = mix(colour, vec3(0.2, 0.1, 0.05), smoothstep(0.6, 1.0, bulge));
    float seam = min(min(local.y, 1.0 - local.y), abs(fract((q.x + shift) * 0.35 + 0.5) - 0.5) * 2.8);
    colour *= smoothstep(0.0, 0.02, seam);
    float gloss = exp(-8.0 * abs(uv.x + uv.y - 1.0 + 0.05 * late + 0.03 * fibre));
    colour += p.polish * 0.3 * gloss;
    return vec4(colour, 1.0);
}
