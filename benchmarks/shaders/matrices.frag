mat3 rotation(vec3 angles) {
    vec3 c = cos(angles), s = sin(angles);
    mat3 x = mat3(vec3(1, 0, 0), vec3(0, c.x, s.x), vec3(0, -s.x, c.x));
    mat3 y = mat3(vec3(c.y, 0, -s.y), vec3(0, 1, 0), vec3(s.y, 0, c.y));
    mat3 z = mat3(vec3(c.z, s.z, 0), vec3(-s.z, c.z, 0), vec3(0, 0, 1));
    return x * y * z;
}

vec2 projected(mat4 camera, vec3 q) {
    vec4 clip = camera * vec4(q, 1.0);
    return clip.xy / clip.w;
}

float segment(vec2 q, vec2 a, vec2 b) {
    vec2 ab = b - a, aq = q - a;
    return length(aq - ab * clamp(dot(aq, ab) / dot(ab, ab), 0.0, 1.0));
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * u.resolution / u.resolution.y * 2.0;
    mat3 r = rotation(u.time * p.spin * vec3(1.0, 0.7, 0.4));
    mat4 camera = mat4(vec4(1.6, 0, 0, 0), vec4(0, 1.6, 0, 0), vec4(0, 0, 1, 1),
                       vec4(0, 0, 3.0, 3.0));
    float d = 10.0;
    for (int axis = 0; axis < 3; axis++) {
        for (int i = 0; i < 4; i++) {
            float s = (i & 1) != 0 ? 0.8 : -0.8, t = (i & 2) != 0 ? 0.8 : -0.8;
            vec3 a = axis == 0 ? vec3(-0.8, s, t) : axis == 1 ? vec3(s, -0.8, t) : vec3(s, t, -0.8);
            vec3 b = axis == 0 ? vec3(0.8, s, t) : axis == 1 ? vec3(s, 0.8, t) : vec3(s, t, 0.8);
            d = min(d, segment(q, projected(camera, r * a), projected(camera, r * b)));
        }
    }
    float glow = p.width / (d + p.width);
    return vec4(transpose(r) * vec3(glow, glow * glow, 0.3) * 0.5 + 0.5 * glow, 1.0);
}
