// Ribbons that go over and under each other: three kinds of tiles, chosen by a switch.

uint mixed(ivec2 cell) {
    uint n = uint(cell.x + 512) * 0x9e3779b1u ^ uint(cell.y + 512) * 0x85ebca6bu;
    n ^= n >> 15;
    n *= 0x2c1b3c6du;
    n ^= n >> 12;
    return n;
}

vec4 over(vec4 below, float d, float width, float soft, vec3 paint) {
    float body = smoothstep(width + soft, width - soft, abs(d));
    float shade_ = smoothstep(width + 0.1, width, abs(d));
    float stripe = smoothstep(soft, -soft, abs(abs(d) - width * 0.65) - 0.015);
    vec3 colour = mix(below.xyz * (1.0 - 0.5 * shade_), paint, body);
    colour = mix(colour, paint * 0.45, stripe * body);
    return vec4(colour, max(below.w, body));
}

vec4 tile(vec2 f, uint kind, float width, float soft, vec3 a, vec3 b) {
    vec4 c = vec4(0.93, 0.9, 0.84, 0.0);
    switch (kind) {
    case 0u:
        c = over(c, f.x - 0.5, width, soft, a);
        c = over(c, f.y - 0.5, width, soft, b);
        break;
    case 1u:
        c = over(c, f.y - 0.5, width, soft, b);
        c = over(c, f.x - 0.5, width, soft, a);
        break;
    case 2u:
        c = over(c, length(f) - 0.5, width, soft, a);
        c = over(c, length(f - 1.0) - 0.5, width, soft, b);
        break;
    case 3u: {
        vec2 g = vec2(1.0 - f.x, f.y);
        c = over(c, length(g) - 0.5, width, soft, b);
        c = over(c, length(g - 1.0) - 0.5, width, soft, a);
        break;
    }
    default: {
        float ring = length(f - 0.5) - 0.3;
        c = over(c, f.x - 0.5, width, soft, a);
        c = over(c, ring, width * 0.6, soft, mix(a, b, 0.5));
        c = over(c, f.y - 0.5, width, soft, b);
        break;
    }
    }
    return c;
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * p.tiles;
    float angle = 0.1 * sin(u.time * 0.3);
    q = vec2(q.x * cos(angle) - q.y * sin(angle), q.x * sin(angle) + q.y * cos(angle)) + u.time * 0.2;
    ivec2 cell = ivec2(floor(q));
    uint n = mixed(cell);
    vec3 a = 0.55 + 0.35 * cos(vec3(0.0, 2.0, 4.0) + 0.4 * float(cell.x + cell.y));
    vec3 b = 0.55 + 0.35 * cos(vec3(3.0, 5.0, 1.0) + 0.4 * float(cell.x - cell.y));
    float soft = 1.5 * p.tiles / u.resolution.y;
    vec4 c = tile(fract(q), (n >> 8) % 5u, p.band, soft, a, b);
    float grain = float((n ^ (n >> 3)) & 255u) / 255.0;
    vec3 colour = c.xyz * (0.97 + 0.03 * grain);
    colour *= 1.0 - 0.25 * length(uv - 0.5);
    return vec4(colour, 1.0);
}
