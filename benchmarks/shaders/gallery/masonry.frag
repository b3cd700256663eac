// A wall of bricks with rough stone, mortar and a lamp that moves over it.

float hash(vec2 q) {
    vec3 a = fract(q.xyx * 0.1031);
    a += dot(a, a.yzx + 33.33);
    return fract((a.x + a.y) * a.z);
}

float noise(vec2 q) {
    vec2 cell = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(cell), hash(cell + vec2(1, 0)), f.x),
               mix(hash(cell + vec2(0, 1)), hash(cell + vec2(1, 1)), f.x), f.y);
}

float fbm(vec2 q, int octaves) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < octaves; i++) {
        sum += size * noise(q);
        q = q * 2.01 + 13.7;
        size *= 0.5;
    }
    return sum;
}

struct Brick {
    vec2 id;
    vec2 local;
    float edge;
};

Brick brickAt(vec2 q, float rough) {
    Brick b;
    vec2 at = q * vec2(0.45, 1.0);
    float row = floor(at.y);
    at.x += 0.5 * mod(abs(row), 2.0) + 0.08 * (hash(vec2(row, 3.0)) - 0.5);
    b.id = vec2(floor(at.x), row);
    b.local = fract(at) - 0.5;
    vec2 d = 0.5 - abs(b.local);
    d.x /= 0.45;
    b.edge = min(d.x, d.y) + rough;
    return b;
}

float height(vec2 q, float mortar) {
    float rough = (fbm(q * 5.0, 3) - 0.45) * 0.08;
    Brick b = brickAt(q, rough);
    float body = smoothstep(mortar, mortar + 0.08, b.edge);
    float tilt = dot(b.local, vec2(hash(b.id) - 0.5, hash(b.id + 5.0) - 0.5)) * 0.5;
    float face = 0.6 + 0.25 * fbm(q * 9.0 + b.id * 7.0, 3) + 0.15 * hash(b.id + 9.0) + tilt;
    return mix(0.2 + 0.1 * noise(q * 30.0), face, body);
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    vec2 q = uv * vec2(aspect, 1.0) * p.rows;
    float rough = (fbm(q * 5.0, 3) - 0.45) * 0.08;
    Brick b = brickAt(q, rough);
    float e = 0.02;
    float h = height(q, p.mortar);
    float hx = height(q + vec2(e, 0.0), p.mortar), hy = height(q + vec2(0.0, e), p.mortar);
    vec3 normal = normalize(vec3((h - hx) / e, (h - hy) / e, 2.5));
    float body = smoothstep(p.mortar, p.mortar + 0.05, b.edge);
    float n = hash(b.id + 1.0);
    vec3 clay = mix(vec3(0.55, 0.22, 0.14), vec3(0.7, 0.38, 0.22), n);
    clay = mix(clay, vec3(0.35, 0.2, 0.2), step(0.85, hash(b.id + 2.0)));
    clay *= 0.8 + 0.4 * fbm(q * 14.0, 3);
    vec3 base = mix(vec3(0.55, 0.52, 0.47) * (0.8 + 0.3 * noise(q * 40.0)), clay, body);
    float moss = smoothstep(0.55, 0.7, fbm(q * 0.9 + 31.0, 4)) * smoothstep(0.8, 0.2, uv.y);
    base = mix(base, vec3(0.2, 0.3, 0.1), moss * (1.0 - 0.5 * body));
    vec3 lamp = vec3(p.rows * (0.5 * aspect + 0.6 * sin(u.time * 0.6)), p.rows * (0.55 + 0.3 * cos(u.time * 0.8)), 2.2);
    vec3 to = lamp - vec3(q, h);
    float far = dot(to, to);
    to *= inversesqrt(far);
    float light = max(dot(normal, to), 0.0) * 9.0 / (2.0 + far);
    vec3 halfway = normalize(to + vec3(0.0, 0.0, 1.0));
    float gloss = pow(max(dot(normal, halfway), 0.0), 30.0) * 2.0 / (2.0 + far);
    vec3 colour = base * (0.12 + light * vec3(1.0, 0.82, 0.6)) + gloss * (0.2 + 0.3 * body);
    colour *= 0.7 + 0.3 * smoothstep(0.1, 0.5, h);
    return vec4(sqrt(colour), 1.0);
}
