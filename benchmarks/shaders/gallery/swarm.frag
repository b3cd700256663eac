// Sixty points on curves, each a small light with a tail of its own colour.

vec2 hash2(float n) {
    uint a = uint(n * 16.0) * 747796405u + 2891336453u;
    a = ((a >> ((a >> 28) + 4u)) ^ a) * 277803737u;
    return vec2(a & 0xffffu, a >> 16) / 65536.0;
}

vec2 place(float id, float time) {
    vec2 a = hash2(id), b = hash2(id + 51.7);
    float speed = 0.3 + 0.5 * a.x;
    vec2 q = vec2(sin(time * speed + a.y * 6.2831853), cos(time * speed * (0.8 + 0.4 * b.x) + b.y * 6.2831853));
    q += 0.3 * vec2(cos(time * 1.3 * b.x + id), sin(time * 1.1 * a.y + id * 2.0));
    return q * vec2(1.1, 0.65);
}

vec3 tint(float x) {
    return 0.5 + 0.5 * cos(6.2831853 * (x + vec3(0.0, 0.33, 0.67)));
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    vec3 colour = vec3(0.01, 0.015, 0.03) + 0.03 * uv.y;
    int points = int(p.points), tail = int(p.tail);
    for (int i = 0; i < points; i++) {
        float id = float(i);
        vec2 head = place(id, u.time);
        vec2 d = q - head;
        if (dot(d, d) > 0.35)
            continue;
        vec3 paint = tint(id * 0.618034);
        float size = 0.00025 + 0.0003 * hash2(id + 9.0).x;
        float light = size / (dot(d, d) + 0.00012);
        vec2 before = head;
        for (int k = 1; k <= tail; k++) {
            vec2 at = place(id, u.time - 0.06 * float(k));
            vec2 along = at - before;
            vec2 from = q - before;
            float h = clamp(dot(from, along) / max(dot(along, along), 0.000001), 0.0, 1.0);
            vec2 off = from - along * h;
            float fade = 1.0 - (float(k - 1) + h) / float(tail);
            light += 0.00004 * fade / (dot(off, off) + 0.00004) * 0.4;
            before = at;
        }
        colour += paint * light;
    }
    colour = colour / (1.0 + colour);
    float grain = fract(sin(dot(floor(uv * u.resolution), vec2(12.9898, 78.233))) * 43758.5453);
    colour += (grain - 0.5) * 0.01;
    return vec4(sqrt(max(colour, 0.0)), 1.0);
}
