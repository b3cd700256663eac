// Flames: noise that rises, thinned towards the top, with logs and sparks below.

float hash(vec2 q) {
    q = fract(q * vec2(233.34, 851.73));
    q += dot(q, q + 23.45);
    return fract(q.x * q.y);
}

float noise(vec2 q) {
    vec2 cell = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(cell), hash(cell + vec2(1, 0)), f.x),
               mix(hash(cell + vec2(0, 1)), hash(cell + vec2(1, 1)), f.x), f.y);
}

float turbulence(vec2 q) {
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < 5; i++) {
        sum += size * abs(2.0 * noise(q) - 1.0);
        q = q * 2.1 + vec2(3.1, 1.7);
        size *= 0.5;
    }
    return sum;
}

vec3 blackbody(float x) {
    x = clamp(x, 0.0, 1.0);
    return vec3(smoothstep(0.0, 0.45, x), smoothstep(0.25, 0.8, x) * 0.9, smoothstep(0.6, 1.0, x) * 0.8);
}

float flame(vec2 q, float time, float lean) {
    q.x += lean * q.y + 0.08 * sin(q.y * 6.0 - time * 3.0);
    float n = turbulence(vec2(q.x * 2.5, q.y * 1.6 - time));
    float shape = 1.0 - abs(q.x) * (1.8 + 1.5 * q.y) - q.y * 0.75;
    return clamp(shape + (n - 0.35) * (0.7 + q.y), 0.0, 1.0);
}

vec4 shade(vec2 uv) {
    vec2 q = vec2((uv.x - 0.5) * u.resolution.x / u.resolution.y, uv.y) * 1.6;
    float time = u.time * p.rise;
    vec3 colour = vec3(0.02, 0.015, 0.02);
    for (int i = 0; i < 3; i++) {
        float f = float(i) - 1.0;
        vec2 at = q - vec2(f * 0.45, 0.12 + 0.03 * f * f);
        float v = flame(at * (1.0 + 0.25 * abs(f)), time * (1.0 + 0.1 * f) + f * 9.0, 0.1 * f);
        colour = max(colour, blackbody(pow(v, 1.3) * p.heat) * (1.0 - 0.1 * abs(f)));
    }
    float bark = turbulence(vec2(q.x * 5.0, q.y * 22.0));
    float log_ = smoothstep(0.015, -0.015, abs(q.y - 0.09 - 0.05 * sin(q.x * 2.0)) - 0.065) * smoothstep(0.95, 0.9, abs(q.x));
    vec3 wood = vec3(0.14, 0.07, 0.04) * (0.5 + bark) + vec3(0.9, 0.25, 0.05) * pow(bark, 4.0) * p.heat;
    colour = mix(colour, wood, log_);
    for (int i = 0; i < 14; i++) {
        float f = float(i);
        float life = fract(time * (0.15 + 0.1 * hash(vec2(f, 1.0))) + hash(vec2(f, 2.0)));
        vec2 spark = vec2((hash(vec2(f, 3.0)) - 0.5) * 1.4 + 0.15 * sin(life * 9.0 + f), 0.15 + life * 1.5);
        float d = length(q - spark);
        colour += vec3(1.0, 0.5, 0.15) * (1.0 - life) * 0.0009 / (d * d + 0.0006);
    }
    return vec4(1.0 - exp(-colour * 1.3), 1.0);
}
