// A landscape from value noise, marched with growing steps; sun, haze and snow above a height.

float hash(ivec2 q) {
    uint n = uint(q.x) * 1597334677u ^ uint(q.y) * 3812015801u;
    n = (n ^ (n >> 15)) * 2246822519u;
    return float(n >> 8) / 16777216.0;
}

float noise(vec2 q) {
    ivec2 cell = ivec2(floor(q));
    vec2 f = fract(q);
    f = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    return mix(mix(hash(cell), hash(cell + ivec2(1, 0)), f.x),
               mix(hash(cell + ivec2(0, 1)), hash(cell + ivec2(1, 1)), f.x), f.y);
}

float height(vec2 q, int octaves, float roughness) {
    float sum = 0.0, size = 1.0;
    mat2 twist = mat2(vec2(0.8, 0.6), vec2(-0.6, 0.8));
    for (int i = 0; i < octaves; i++) {
        sum += size * noise(q);
        size *= roughness;
        q = twist * q * 2.03;
    }
    return sum;
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 eye = vec3(u.time * 0.4, 1.9, u.time * 0.25);
    vec3 ray = normalize(vec3(at.x, at.y - 0.35, 1.5));
    vec3 sun = normalize(vec3(0.6, 0.35, 0.7));
    float glare = max(dot(ray, sun), 0.0);
    vec3 sky = mix(vec3(0.75, 0.78, 0.82), vec3(0.25, 0.45, 0.75), clamp(ray.y * 2.0, 0.0, 1.0));
    sky += vec3(1.0, 0.7, 0.4) * (0.3 * pow(glare, 8.0) + pow(glare, 250.0));
    float t = 0.2, before = 0.0;
    bool found = false;
    for (int i = 0; i < 50; i++) {
        vec3 q = eye + ray * t;
        float gap = q.y - height(q.xz, 4, p.roughness);
        if (gap < 0.003 * t) {
            found = true;
            break;
        }
        before = t;
        t += 0.45 * gap + 0.01 * t;
        if (t > 18.0 || q.y > 3.5)
            break;
    }
    if (!found)
        return vec4(sqrt(sky), 1.0);
    vec3 hit = eye + ray * mix(before, t, 0.7);
    float e = 0.004 * t;
    float here = height(hit.xz, 6, p.roughness);
    vec3 normal = normalize(vec3(here - height(hit.xz + vec2(e, 0.0), 6, p.roughness), e,
                                     here - height(hit.xz + vec2(0.0, e), 6, p.roughness)));
    float white = smoothstep(p.snow, p.snow + 0.35, here) * smoothstep(0.4, 0.7, normal.y);
    vec3 ground = mix(vec3(0.33, 0.24, 0.17), vec3(0.2, 0.26, 0.12), smoothstep(0.6, 0.9, normal.y));
    ground = mix(ground, vec3(0.9, 0.93, 1.0), white);
    vec3 colour = ground * (1.2 * max(dot(normal, sun), 0.0) + 0.3 * normal.y);
    colour = mix(sky, colour, exp(-0.006 * t * t));
    return vec4(sqrt(colour), 1.0);
}
