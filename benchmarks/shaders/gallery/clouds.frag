// Clouds as a volume: density from noise, light by one sample towards the sun.

float hash(vec3 q) {
    q = fract(q * vec3(0.1031, 0.1103, 0.0973));
    q += dot(q, q.yxz + 13.3);
    return fract((q.x + q.y) * q.z);
}

float noise(vec3 q) {
    vec3 cell = floor(q), f = fract(q);
    f = f * f * (3.0 - 2.0 * f);
    float low = mix(mix(hash(cell), hash(cell + vec3(1, 0, 0)), f.x),
                    mix(hash(cell + vec3(0, 1, 0)), hash(cell + vec3(1, 1, 0)), f.x), f.y);
    float high = mix(mix(hash(cell + vec3(0, 0, 1)), hash(cell + vec3(1, 0, 1)), f.x),
                     mix(hash(cell + vec3(0, 1, 1)), hash(cell + vec3(1, 1, 1)), f.x), f.y);
    return mix(low, high, f.z);
}

float density(vec3 q, int octaves, float cover, float drift) {
    vec3 at = q * 0.9 + vec3(drift, 0.0, drift * 0.4);
    float sum = 0.0, size = 0.5;
    for (int i = 0; i < octaves; i++) {
        sum += size * noise(at);
        at = at * 2.02 + vec3(1.3, 0.7, 2.1);
        size *= 0.5;
    }
    float layer = 1.0 - abs(q.y - 2.0) * 0.9;
    return clamp((sum - (1.0 - cover)) * 3.0, 0.0, 1.0) * clamp(layer, 0.0, 1.0);
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 ray = normalize(vec3(at.x, at.y * 0.8 + 0.55, 1.3));
    vec3 sun = normalize(vec3(-0.6, 0.5, 0.6));
    float drift = u.time * p.wind;
    vec3 sky = mix(vec3(0.7, 0.8, 0.92), vec3(0.18, 0.38, 0.72), clamp(ray.y * 1.4, 0.0, 1.0));
    float toSun = clamp(dot(ray, sun), 0.0, 1.0);
    sky += vec3(0.9, 0.6, 0.3) * pow(toSun, 16.0) * 0.4;
    if (ray.y < 0.05)
        return vec4(sky, 1.0);
    float t = 0.9 / ray.y, end = 3.1 / ray.y;
    float step_ = min((end - t) / 22.0, 0.35);
    float clear = 1.0;
    vec3 light = vec3(0.0);
    for (int i = 0; i < 22; i++) {
        vec3 q = ray * t;
        float d = density(q, 4, p.cover, drift);
        if (d > 0.01) {
            float towards = density(q + sun * 0.35, 3, p.cover, drift);
            float shaded = exp(-1.8 * towards);
            vec3 colour = mix(vec3(0.35, 0.4, 0.5), vec3(1.0, 0.93, 0.82), shaded);
            float absorbed = 1.0 - exp(-d * step_ * 5.0);
            light += colour * absorbed * clear;
            clear *= 1.0 - absorbed;
            if (clear < 0.03)
                break;
        }
        t += step_;
    }
    float far = exp(-0.0015 * t * t);
    vec3 colour = mix(sky, light + sky * clear, far);
    return vec4(colour, 1.0);
}
