// Plasma of the old kind: sines of sines, indexed into a table of colours with a mix.

const vec3 table[8] = {vec3(0.05, 0.02, 0.15), vec3(0.35, 0.05, 0.4), vec3(0.8, 0.15, 0.35),
                            vec3(1.0, 0.45, 0.2),   vec3(1.0, 0.8, 0.35),  vec3(0.7, 0.95, 0.7),
                            vec3(0.15, 0.65, 0.75), vec3(0.05, 0.2, 0.45)};

vec3 lookUp(float x) {
    float at = fract(x) * 8.0;
    int i = int(at) & 7;
    vec3 a = table[i], b = table[(i + 1) & 7];
    float f = at - floor(at);
    return mix(a, b, f * f * (3.0 - 2.0 * f));
}

float plasma(vec2 q, float time) {
    float v = sin(q.x + time);
    v += sin(0.5 * (q.y + time));
    v += sin(0.5 * (q.x + q.y + time));
    vec2 c = q + vec2(2.0 * sin(time * 0.33), 2.0 * cos(time * 0.5));
    v += sin(sqrt(dot(c, c) + 1.0) + time);
    return v;
}

vec2 stirred(vec2 q, float time) {
    for (int i = 1; i < 6; i++) {
        float f = float(i);
        q.x += 0.6 / f * cos(f * 1.7 * q.y + time * 0.7 + 0.3 * f);
        q.y += 0.6 / f * sin(f * 1.3 * q.x + time * 0.5 - 0.2 * f);
    }
    return q;
}

vec4 shade(vec2 uv) {
    float time = u.time * p.speed;
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * p.detail * 2.0;
    vec2 s = stirred(q * 0.6, time);
    float v = plasma(s * 1.5, time);
    float e = 0.02;
    float vx = plasma(stirred((q + vec2(e, 0.0)) * 0.6, time) * 1.5, time);
    float vy = plasma(stirred((q + vec2(0.0, e)) * 0.6, time) * 1.5, time);
    vec3 normal = normalize(vec3((v - vx) / e, (v - vy) / e, 2.5));
    float light = clamp(dot(normal, normalize(vec3(-0.4, 0.6, 0.8))), 0.0, 1.0);
    vec3 colour = lookUp(v * 0.12 + time * 0.05);
    colour *= 0.55 + 0.6 * light;
    colour += 0.35 * pow(light, 24.0);
    float line = abs(fract(v * 2.0) - 0.5);
    colour *= 0.9 + 0.1 * smoothstep(0.0, 0.08, line);
    return vec4(colour, 1.0);
}
