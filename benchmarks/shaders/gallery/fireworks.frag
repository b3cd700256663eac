// Rockets that burst: two loops, one over rockets and one over their sparks.

float hash1(float n) {
    return fract(sin(n) * 43758.5453);
}

vec2 direction(float n) {
    float a = hash1(n) * 6.2831853;
    float r = sqrt(hash1(n + 31.7));
    return r * vec2(cos(a), sin(a));
}

vec3 hue(float x) {
    vec3 k = mod(vec3(5.0, 3.0, 1.0) + x * 6.0, vec3(6.0));
    return 1.0 - clamp(min(k, 4.0 - k), 0.0, 1.0);
}

float skyline(float x) {
    float block = floor(x * 18.0);
    float tall = 0.05 + 0.12 * hash1(block + 3.0);
    return tall + 0.02 * step(0.7, hash1(block * 2.1)) * smoothstep(0.3, 0.5, fract(x * 18.0));
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    vec2 q = vec2((uv.x - 0.5) * aspect, uv.y);
    vec3 colour = mix(vec3(0.03, 0.02, 0.08), vec3(0.0, 0.0, 0.02), uv.y);
    int rockets = int(p.rockets);
    for (int i = 0; i < rockets; i++) {
        float period = 2.2 + 0.6 * hash1(float(i) * 3.3);
        float clock = u.time / period + hash1(float(i) * 7.7);
        float shot = floor(clock), life = fract(clock);
        float seed = shot * 17.0 + float(i) * 101.0;
        vec2 from = vec2((hash1(seed) - 0.5) * aspect * 0.8, 0.0);
        vec2 burst = vec2(from.x + (hash1(seed + 1.0) - 0.5) * 0.3, 0.5 + 0.35 * hash1(seed + 2.0));
        vec3 paint = hue(hash1(seed + 3.0));
        if (life < 0.3) {
            float climb = life / 0.3;
            vec2 at = mix(from, burst, 1.0 - (1.0 - climb) * (1.0 - climb));
            vec2 d = q - at;
            colour += vec3(1.0, 0.8, 0.5) * 0.00008 / (dot(d, d) + 0.00003);
            continue;
        }
        float age = (life - 0.3) / 0.7;
        vec2 near = q - burst;
        if (dot(near, near) > 0.3)
            continue;
        float reach = 0.42 * (1.0 - exp(-4.0 * age));
        float fade = (1.0 - age) * (1.0 - age);
        for (int k = 0; k < 40; k++) {
            float n = seed + float(k) * 1.37;
            vec2 at = burst + direction(n) * reach;
            at.y -= p.gravity * age * age;
            vec2 d = q - at;
            float twinkle = 0.6 + 0.4 * sin(age * 40.0 + n * 5.0);
            float light = 0.00006 * fade * twinkle / (dot(d, d) + 0.00002);
            colour += mix(paint, vec3(1.0), 0.3 * hash1(n + 5.0)) * light;
        }
        colour += paint * 0.03 * fade * exp(-6.0 * dot(near, near));
    }
    float roof = skyline(uv.x);
    if (uv.y < roof) {
        vec2 pane = vec2(uv.x * 180.0, uv.y * 110.0);
        float lit = step(0.82, hash1(dot(floor(pane), vec2(1.7, 31.3))));
        vec2 f = abs(fract(pane) - 0.5);
        colour = vec3(0.01, 0.01, 0.02) + lit * vec3(0.9, 0.7, 0.3) * 0.5 * step(max(f.x, f.y), 0.3);
    }
    return vec4(colour / (0.6 + colour) * 1.4, 1.0);
}
