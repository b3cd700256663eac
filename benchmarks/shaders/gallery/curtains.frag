// Northern lights: folded curtains of triangle noise, drawn in front of stars above a lake.

mat2 turn(float a) {
    float c = cos(a), s = sin(a);
    return mat2(vec2(c, -s), vec2(s, c));
}

float triangle(float x) {
    return clamp(abs(fract(x) - 0.5), 0.01, 0.49);
}

vec2 triangle2(vec2 q) {
    return vec2(triangle(q.x) + triangle(q.y), triangle(q.y + triangle(q.x)));
}

float curtain(vec2 q, float time) {
    float z = 1.8, z2 = 2.5, sum = 0.0;
    q = turn(q.x * 0.06) * q;
    vec2 bent = q;
    mat2 m = mat2(vec2(0.95534, -0.29552), vec2(0.29552, 0.95534));
    for (int i = 0; i < 5; i++) {
        vec2 shift = triangle2(bent * 1.85) * 0.75;
        shift = turn(time) * shift;
        q -= shift / z2;
        bent *= 1.3;
        z2 *= 0.45;
        z *= 0.42;
        q *= 1.21 + (sum - 1.0) * 0.02;
        sum += triangle(q.x + triangle(q.y)) * z;
        q = -(m * q);
    }
    return clamp(1.0 / pow(sum * 29.0, 1.3), 0.0, 0.55);
}

vec3 aurora(vec3 ray, float time, float height) {
    vec3 total = vec3(0.0), average = vec3(0.0);
    for (int i = 0; i < 22; i++) {
        float f = float(i) * 2.2;
        float layer = (0.8 + pow(f, 1.4) * 0.002 * height - 0.02) / (ray.y * 2.0 + 0.4);
        float v = curtain((ray * layer).zx, time);
        vec3 paint = (sin(1.0 - vec3(2.15, -0.5, 1.2) + f * 0.043) * 0.5 + 0.5) * v;
        average = mix(average, paint, 0.5);
        total += average * exp2(-f * 0.065 - 2.5) * smoothstep(0.0, 5.0, f) * 2.2;
    }
    return total * clamp(ray.y * 15.0 + 0.4, 0.0, 1.0) * 1.8;
}

float hash(vec2 q) {
    return fract(sin(dot(q, vec2(12.9898, 4.1414))) * 43758.5453);
}

vec3 stars(vec3 ray) {
    vec2 q = vec2(atan(ray.x, ray.z), ray.y) * 90.0;
    float n = hash(floor(q));
    vec2 f = fract(q) - 0.5;
    float light = step(0.975, n) * smoothstep(0.3, 0.0, length(f));
    return light * mix(vec3(0.7, 0.8, 1.0), vec3(1.0, 0.85, 0.7), fract(n * 91.0));
}

vec3 heaven(vec3 ray) {
    vec3 colour = mix(vec3(0.02, 0.04, 0.08), vec3(0.005, 0.01, 0.03), clamp(ray.y * 2.0, 0.0, 1.0));
    return colour + stars(ray) + aurora(ray, u.time * p.speed, p.height);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 ray = normalize(vec3(q.x, q.y + 0.12, 0.9));
    float ridge = 0.02 + 0.025 * sin(ray.x * 9.0) + 0.012 * sin(ray.x * 23.0 + 1.0) + 0.005 * sin(ray.x * 71.0);
    if (ray.y > 0.0) {
        vec3 colour = heaven(ray);
        colour = mix(colour, vec3(0.008, 0.012, 0.018), smoothstep(0.003, -0.003, ray.y - ridge));
        return vec4(sqrt(colour), 1.0);
    }
    vec3 mirrored = ray;
    mirrored.y = -ray.y + 0.01 * sin(q.x * 40.0 + u.time * 1.5) * sin(q.y * 120.0 - u.time);
    mirrored = normalize(mirrored);
    vec3 colour = heaven(mirrored) * 0.55;
    colour = mix(colour, vec3(0.006, 0.01, 0.015), smoothstep(0.003, -0.003, mirrored.y - ridge));
    return vec4(sqrt(colour + vec3(0.004, 0.008, 0.012)), 1.0);
}
