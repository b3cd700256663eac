// A bending tunnel of rings, flown through without marching: one ring in each round.

vec2 path(float z, float bend) {
    return bend * vec2(sin(z * 0.21) + 0.4 * sin(z * 0.53), cos(z * 0.17) * 0.8);
}

float hash(float n) {
    return fract(sin(n * 12.9898) * 43758.5453);
}

vec3 palette(float x) {
    return 0.5 + 0.5 * cos(6.2831853 * (x + vec3(0.0, 0.33, 0.67)));
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    float z = u.time * p.speed;
    vec2 here = path(z, p.bend);
    vec2 ahead = path(z + 2.0, p.bend) - here;
    vec3 colour = vec3(0.0);
    float covered = 0.0;
    float first = ceil(z * 2.0) * 0.5;
    for (int i = 0; i < 36; i++) {
        float ringZ = first + float(i) * 0.5;
        float depth = ringZ - z;
        if (depth < 0.1)
            continue;
        vec2 centre = path(ringZ, p.bend) - here - ahead * depth * 0.5;
        vec2 q = at - centre / depth;
        float radius = length(q) * depth;
        float angle = atan(q.y, q.x);
        float id = floor(ringZ * 2.0 + 0.5);
        float sides = 5.0 + floor(hash(id) * 4.0);
        float sector = 6.2831853 / sides;
        float folded = mod(angle + 12.566371 + hash(id + 9.0) * 6.0 + u.time * (hash(id + 3.0) - 0.5), sector) - 0.5 * sector;
        float edge = radius * cos(folded);
        float line = 0.02 + 0.01 * depth;
        float ring = smoothstep(line, 0.0, abs(edge - 1.0));
        float spoke = smoothstep(0.04, 0.0, abs(folded)) * smoothstep(1.0, 1.05, radius) *
                      smoothstep(1.5, 1.4, radius);
        float shown = max(ring, spoke * step(0.6, hash(id + 5.0)));
        float fade = exp(-0.16 * depth);
        vec3 paint = palette(hash(id) + ringZ * 0.03) * (0.4 + 0.6 * step(0.7, hash(id + 1.0)));
        colour += paint * shown * fade * (1.0 - covered);
        covered = min(covered + shown * 0.6, 1.0);
        if (covered > 0.98)
            break;
    }
    colour += palette(z * 0.02) * 0.08 / (0.3 + length(at + ahead * 0.3));
    return vec4(colour, 1.0);
}
