// Paper lanterns that rise in rows: glow is added along the ray, nothing is hit.

vec3 hash3(vec3 q) {
    uvec3 n = uvec3(ivec3(q)) * uvec3(1597334673u, 3812015801u, 2798796415u);
    uint m = (n.x ^ n.y ^ n.z) * 1597334673u;
    m ^= m >> 15;
    uvec3 r = m * uvec3(0x9e3779b1u, 0x85ebca77u, 0xc2b2ae3du);
    return vec3(r >> 8u) / 16777216.0;
}

float lantern(vec3 q) {
    float body = length(q * vec3(1.0, 0.75, 1.0)) - 0.12;
    float cut = abs(q.y) - 0.1;
    return max(body, cut);
}

vec4 shade(vec2 uv) {
    vec2 at = (uv * 2.0 - 1.0) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 ray = normalize(vec3(at.x, at.y + 0.2, 1.4));
    vec3 eye = vec3(0.3 * u.time * 0.2, 0.0, u.time * 0.15);
    vec3 colour = mix(vec3(0.08, 0.05, 0.1), vec3(0.01, 0.01, 0.04), clamp(ray.y + 0.5, 0.0, 1.0));
    float stars = hash3(floor(ray * 160.0)).x;
    colour += step(0.998, stars) * 0.6 * smoothstep(0.0, 0.4, ray.y);
    float t = 0.4;
    for (int i = 0; i < 40; i++) {
        vec3 q = eye + ray * t;
        float column = hash3(vec3(floor(q.xz), 1.0)).x;
        q.y -= u.time * p.rise * (0.5 + column) + column * 5.0;
        vec3 cell = floor(q);
        vec3 random = hash3(cell);
        vec3 local = q - cell - 0.5 - (random - 0.5) * 0.6;
        float d = lantern(local);
        if (random.x > 0.45) {
            float flicker = 0.8 + 0.2 * sin(u.time * 9.0 * random.y + random.z * 30.0);
            vec3 paint = mix(vec3(1.0, 0.45, 0.12), vec3(1.0, 0.75, 0.3), random.z);
            float near = max(d, 0.0) + 0.02;
            colour += paint * flicker * p.glow * 0.02 / (near * near) * exp(-0.25 * t);
        } else {
            d = 0.3;
        }
        t += clamp(abs(d) * 0.7, 0.05, 0.35);
        if (t > 14.0)
            break;
    }
    colour = 1.0 - exp(-colour * 1.4);
    return vec4(colour, 1.0);
}
