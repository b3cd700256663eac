// A Julia set coloured by how near its orbit comes to a cross, a circle and a point.

struct Orbit {
    float cross_;
    float circle;
    float point;
    float rounds;
};

Orbit follow(vec2 z, vec2 c) {
    Orbit o;
    o.cross_ = 10.0;
    o.circle = 10.0;
    o.point = 10.0;
    o.rounds = 0.0;
    for (int i = 0; i < 90; i++) {
        z = vec2(z.x * z.x - z.y * z.y, 2.0 * z.x * z.y) + c;
        float size = dot(z, z);
        if (size > 60.0) {
            o.rounds = float(i) + 1.0 - log2(log2(size) * 0.5);
            return o;
        }
        o.cross_ = min(o.cross_, min(abs(z.x), abs(z.y)));
        o.circle = min(o.circle, abs(sqrt(size) - 0.5));
        o.point = min(o.point, dot(z - vec2(0.3, 0.2), z - vec2(0.3, 0.2)));
    }
    o.rounds = 90.0;
    return o;
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.6;
    vec2 c = vec2(p.real, p.imaginary) + 0.02 * vec2(cos(u.time * 0.5), sin(u.time * 0.7));
    vec3 sum = vec3(0.0);
    for (int s = 0; s < 2; s++) {
        vec2 jitter = (vec2(s & 1, 1 - (s & 1)) - 0.5) / u.resolution.y;
        Orbit o = follow(q + jitter, c);
        vec3 colour;
        if (o.rounds >= 90.0) {
            float lines = exp(-12.0 * o.cross_);
            colour = mix(vec3(0.03, 0.02, 0.06), vec3(0.9, 0.7, 0.3), lines);
            colour += 0.35 * exp(-40.0 * o.circle) * vec3(0.2, 0.6, 1.0);
        } else {
            float x = sqrt(o.rounds / 90.0);
            colour = 0.5 + 0.5 * cos(3.0 + x * 9.0 + vec3(0.0, 0.7, 1.4));
            colour *= 0.35 + 0.65 * smoothstep(0.0, 0.3, x);
            colour = mix(colour, vec3(1.0, 0.95, 0.85), exp(-30.0 * o.circle) * 0.6);
            colour = mix(colour, vec3(0.1, 0.0, 0.15), exp(-18.0 * o.cross_) * 0.7);
        }
        float spot = exp(-25.0 * o.point);
        colour += spot * vec3(0.25, 0.12, 0.3);
        sum += colour;
    }
    return vec4(sum * 0.5, 1.0);
}
