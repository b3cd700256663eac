// Lightning: a path that noise bends, with branches, and clouds that its light shows.

float hash(float n) {
    return fract(sin(n * 127.1) * 43758.5453);
}

float noise1(float x) {
    float i = floor(x), f = fract(x);
    f = f * f * (3.0 - 2.0 * f);
    return mix(hash(i), hash(i + 1.0), f) * 2.0 - 1.0;
}

float jagged(float x, float seed) {
    float sum = 0.0, size = 0.5, frequency = 3.0;
    for (int i = 0; i < 6; i++) {
        sum += size * noise1(x * frequency + seed);
        frequency *= 2.1;
        size *= 0.55;
    }
    return sum;
}

float noise2(vec2 q) {
    vec2 i = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    float n = i.x + i.y * 57.0;
    return mix(mix(hash(n), hash(n + 1.0), f.x), mix(hash(n + 57.0), hash(n + 58.0), f.x), f.y);
}

float clouds(vec2 q) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += size * noise2(q);
        q = vec2(q.x * 1.7 - q.y * 1.1, q.x * 1.1 + q.y * 1.7);
        size *= 0.5;
    }
    return sum;
}

float bolt(vec2 q, vec2 from, vec2 to, float seed, float width) {
    vec2 along = to - from;
    float reach = length(along);
    vec2 d = along / reach, n = vec2(-d.y, d.x);
    vec2 local = vec2(dot(q - from, d), dot(q - from, n));
    if (local.x < 0.0 || local.x > reach)
        return 0.0;
    float x = local.x / reach;
    float bend = jagged(x * reach * 2.0, seed) * 0.22 * smoothstep(0.0, 0.15, x);
    float away = abs(local.y - bend);
    float thin = width * (1.0 - 0.7 * x);
    return thin / (away + 0.25 * thin) * 0.25 * smoothstep(1.0, 0.9, x);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float clock = u.time * 0.8;
    float strike = floor(clock), life = fract(clock);
    float flash = exp(-1.6 * life) * (0.7 + 0.3 * sin(life * 70.0));
    flash *= step(p.calm * 0.5, hash(strike + 0.5));
    vec2 from = vec2((hash(strike) - 0.5) * 1.6, 1.0);
    vec2 to = vec2(from.x + (hash(strike + 2.0) - 0.5) * 1.2, -0.75);
    float cloud = clouds(q * vec2(1.2, 2.2) + vec2(u.time * 0.08, 3.0));
    float high = smoothstep(-0.2, 0.9, q.y + 0.4 * cloud - 0.2);
    vec3 colour = mix(vec3(0.05, 0.06, 0.1), vec3(0.12, 0.12, 0.16), cloud) * (0.5 + 0.7 * high);
    vec2 near = (q - vec2(from.x, 0.7)) * vec2(0.7, 1.0);
    colour += vec3(0.55, 0.6, 0.9) * flash * cloud * cloud * high * exp(-1.2 * dot(near, near)) * 2.5;
    float light = bolt(q, from, to, strike * 13.0, 0.012);
    int branches = int(p.branches);
    for (int i = 0; i < branches; i++) {
        float n = strike * 31.0 + float(i) * 7.0;
        float at = 0.15 + 0.6 * hash(n);
        vec2 start = mix(from, to, at);
        vec2 side = normalize(vec2(-(to - from).y, (to - from).x));
        start += side * jagged(at * length(to - from) * 2.0, strike * 13.0) * 0.22;
        vec2 end = start + vec2((hash(n + 1.0) - 0.5) * 1.1, -0.25 - 0.35 * hash(n + 2.0));
        light += bolt(q, start, end, n, 0.006) * 0.7;
    }
    colour += vec3(0.75, 0.8, 1.0) * light * flash * 3.0;
    float land = -0.72 + 0.05 * noise1(q.x * 3.0) + 0.015 * noise1(q.x * 17.0);
    vec3 ground = vec3(0.02, 0.025, 0.03) + vec3(0.12, 0.14, 0.2) * flash * exp(-3.0 * abs(q.x - to.x));
    colour = mix(colour, ground, smoothstep(0.004, -0.004, q.y - land));
    return vec4(colour / (1.0 + colour), 1.0);
}
