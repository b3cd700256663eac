// The edges of a cube of four dimensions, turned by matrices and projected twice.

mat4 planeTurn(int a, int b, float angle) {
    float c = cos(angle), s = sin(angle);
    mat4 m = mat4(vec4(1, 0, 0, 0), vec4(0, 1, 0, 0), vec4(0, 0, 1, 0), vec4(0, 0, 0, 1));
    m[a][a] = c;
    m[b][b] = c;
    m[a][b] = s;
    m[b][a] = -s;
    return m;
}

vec4 corner(int i) {
    return vec4((i & 1) != 0 ? 1.0 : -1.0, (i & 2) != 0 ? 1.0 : -1.0, (i & 4) != 0 ? 1.0 : -1.0, (i & 8) != 0 ? 1.0 : -1.0);
}

// x and y on the picture, z the depth in three dimensions, w the one in four.
vec4 projected(vec4 v) {
    float near4 = 1.0 / (2.6 - v.w);
    vec3 q = v.xyz * near4 * 1.4;
    float near3 = 1.0 / (2.8 - q.z);
    return vec4(q.xy * near3 * 1.9, near3, near4);
}

vec4 segment(vec2 q, vec4 a, vec4 b) {
    vec2 d = b.xy - a.xy, r = q - a.xy;
    float h = clamp(dot(r, d) / max(dot(d, d), 0.00001), 0.0, 1.0);
    return vec4(length(r - d * h), mix(a.z, b.z, h), mix(a.w, b.w, h), h);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float t = u.time * p.speed;
    mat4 turn = planeTurn(0, 3, t) * planeTurn(1, 2, t * 0.7) * planeTurn(0, 2, t * 0.4) * planeTurn(1, 3, t * 0.3);
    vec4 points[16];
    for (int i = 0; i < 16; i++)
        points[i] = projected(turn * corner(i));
    vec3 colour = mix(vec3(0.03, 0.04, 0.07), vec3(0.08, 0.06, 0.1), uv.y);
    vec2 grid = abs(fract(q * 5.0) - 0.5);
    colour += 0.015 * smoothstep(0.48, 0.5, max(grid.x, grid.y));
    float soft = 2.0 / u.resolution.y;
    for (int i = 0; i < 16; i++) {
        for (int axis = 0; axis < 4; axis++) {
            int j = i ^ (1 << axis);
            if (j < i)
                continue;
            vec4 s = segment(q, points[i], points[j]);
            float width = p.width * s.y * 2.6;
            float light = smoothstep(width + soft, width - soft, s.x);
            float glow = 0.0006 / (s.x * s.x + 0.0012);
            vec3 paint = 0.55 + 0.45 * cos(vec3(0.0, 1.6, 3.2) + float(axis) * 1.3 + s.z * 2.0);
            float dash = axis == 3 ? smoothstep(0.2, 0.4, abs(fract(s.w * 9.0 - u.time) - 0.5)) : 1.0;
            float depth = smoothstep(0.25, 0.75, s.z);
            colour += paint * glow * 0.2 * depth * dash;
            colour = mix(colour, paint * (0.35 + 0.8 * depth), light * dash);
        }
    }
    for (int i = 0; i < 16; i++) {
        float size = 0.03 * points[i].z * points[i].w * 4.0;
        float d = length(q - points[i].xy);
        colour = mix(colour, vec3(1.0, 0.95, 0.85) * (0.4 + points[i].w), smoothstep(size + soft, size - soft, d));
    }
    return vec4(sqrt(colour), 1.0);
}
