// Mountains behind mountains at dusk; each ridge is noise of one dimension, in haze.

float hash(int n) {
    uint m = uint(n) * 747796405u + 2891336453u;
    m = ((m >> ((m >> 28u) + 4u)) ^ m) * 277803737u;
    return float((m >> 22u) ^ m) / 4294967295.0;
}

float noise(float x) {
    int i = int(floor(x));
    float f = x - floor(x);
    return mix(hash(i), hash(i + 1), f * f * (3.0 - 2.0 * f));
}

float ridge(float x) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 7; i++) {
        float n = noise(x);
        sum += size * (1.0 - abs(2.0 * n - 1.0));
        x = x * 2.07 + 17.3;
        size *= 0.48;
    }
    return sum;
}

vec3 dusk(vec2 q, vec2 sun) {
    vec3 colour = mix(vec3(0.98, 0.6, 0.35), vec3(0.35, 0.3, 0.55), smoothstep(-0.1, 0.55, q.y));
    colour = mix(colour, vec3(0.1, 0.12, 0.3), smoothstep(0.35, 0.9, q.y));
    float d = length(q - sun);
    colour += vec3(1.0, 0.75, 0.45) * 0.12 / (0.15 + d);
    return mix(colour, vec3(1.0, 0.92, 0.75), smoothstep(0.085, 0.08, d));
}

float birds(vec2 q, float time) {
    float light = 0.0;
    for (int i = 0; i < 6; i++) {
        float f = float(i);
        vec2 at = vec2(mod(time * 0.06 + 0.37 * f, 2.4) - 1.2, 0.22 + 0.05 * sin(f * 3.0 + time * 0.3));
        vec2 d = (q - at) * (30.0 + 6.0 * f);
        float flap = 0.6 + 0.4 * sin(time * 6.0 + f * 2.0);
        float wing = abs(d.y - flap * (abs(d.x) - d.x * d.x * 0.6) * 0.7);
        light += smoothstep(0.1, 0.04, wing) * step(abs(d.x), 1.0);
    }
    return min(light, 1.0);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec2 sun = vec2(0.25, 0.02);
    vec3 colour = dusk(q, sun);
    float streak = noise(q.y * 60.0 + 4.0 * noise(q.x * 3.0 + u.time * 0.1));
    colour += 0.05 * smoothstep(0.6, 1.0, streak) * smoothstep(0.4, 0.1, abs(q.y - 0.2));
    colour = mix(colour, vec3(0.15, 0.1, 0.18), birds(q, u.time));
    int ridges = int(p.ridges);
    for (int i = 0; i < ridges; i++) {
        float near = float(i + 1) / float(ridges);
        float x = (q.x + u.time * p.drift * near) * (4.5 - 3.0 * near) + float(i) * 31.7;
        float top = 0.12 - 0.5 * near * near + (ridge(x) - 0.45) * (0.12 + 0.28 * near);
        float below = top - q.y;
        if (below < 0.0)
            continue;
        vec3 rock = mix(vec3(0.75, 0.48, 0.45), vec3(0.07, 0.06, 0.12), sqrt(near));
        float haze = exp(-below * (10.0 - 5.0 * near)) * (1.0 - 0.6 * near);
        vec3 mist = mix(vec3(0.95, 0.65, 0.5), vec3(0.5, 0.4, 0.55), near);
        float bottom = smoothstep(0.0, 0.5, below) * 0.55 * (1.0 - near);
        colour = mix(rock, mist, bottom);
        colour += vec3(1.0, 0.6, 0.35) * haze * 0.18 * exp(-3.0 * abs(q.x - sun.x));
        if (near > 0.85) {
            float tree = ridge(x * 14.0) * 0.035;
            colour *= 0.85 + 0.15 * smoothstep(0.0, 0.02, below - tree);
        }
    }
    colour *= 1.0 - 0.35 * dot(q, q);
    return vec4(colour, 1.0);
}
