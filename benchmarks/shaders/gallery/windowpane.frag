// Rain on a window: drops that slide in columns, trails, and a blurred city behind.

vec3 hash3(float n) {
    vec3 q = fract(vec3(n) * vec3(0.1031, 0.11369, 0.13787));
    q += dot(q, q.yzx + 19.19);
    return fract(vec3((q.x + q.y) * q.z, (q.x + q.z) * q.y, (q.y + q.z) * q.x));
}

float saw(float x, float peak) {
    return smoothstep(0.0, peak, x) * smoothstep(1.0, peak, x);
}

vec2 slidingDrops(vec2 uv, float time) {
    vec2 whole = uv;
    uv.y += time * 0.75;
    vec2 size = vec2(6.0, 1.0), grid = size * 2.0;
    vec2 id = floor(uv * grid);
    uv.y += hash3(id.x).x;
    id = floor(uv * grid);
    vec3 n = hash3(id.x * 35.2 + id.y * 2376.1);
    vec2 local = fract(uv * grid) - vec2(0.5, 0.0);
    float x = n.x - 0.5;
    float wiggle = sin(whole.y * 20.0 + sin(whole.y * 20.0));
    x += wiggle * (0.5 - abs(x)) * (n.z - 0.5);
    x *= 0.7;
    float y = (saw(fract(time + n.z), 0.85) - 0.5) * 0.9 + 0.5;
    float d = length((local - vec2(x, y)) * size.yx);
    float drop = smoothstep(0.4, 0.0, d);
    float r = sqrt(smoothstep(1.0, y, local.y));
    float trail = smoothstep(0.23 * r, 0.15 * r * r, abs(local.x - x));
    float front = smoothstep(-0.02, 0.02, local.y - y);
    trail *= front * r * r;
    float beadY = fract(whole.y * 10.0) + (local.y - 0.5);
    float bead = smoothstep(0.3, 0.0, length(local - vec2(x, beadY)));
    return vec2(drop + bead * r * front, trail);
}

float stillDrops(vec2 uv, float time) {
    uv *= 40.0;
    vec2 id = floor(uv);
    vec3 n = hash3(id.x * 107.45 + id.y * 3543.654);
    float d = length(fract(uv) - 0.5 - (n.xy - 0.5) * 0.7);
    return smoothstep(0.3, 0.0, d) * fract(n.z * 10.0) * saw(fract(time + n.z), 0.025);
}

vec2 water(vec2 uv, float time, float rain) {
    vec2 a = slidingDrops(uv, time) * smoothstep(0.2, 0.7, rain);
    vec2 b = slidingDrops(uv * 1.85, time) * smoothstep(0.0, 0.5, rain);
    float c = stillDrops(uv, time) * rain + a.x + b.x;
    return vec2(smoothstep(0.3, 1.0, c), max(a.y, b.y));
}

vec3 city(vec2 q, float blur) {
    vec3 colour = mix(vec3(0.08, 0.1, 0.2), vec3(0.35, 0.2, 0.22), smoothstep(0.8, 0.0, q.y));
    for (int i = 0; i < 16; i++) {
        vec3 n = hash3(float(i) * 3.7 + 1.0);
        vec2 at = vec2(n.x * 2.0 - 0.1, 0.15 + n.y * 0.5);
        float size = 0.02 + 0.03 * n.z + blur;
        float disc = smoothstep(size, size * 0.7, length(q - at));
        colour += disc * (0.5 + 0.5 * cos(vec3(0.0, 1.0, 2.2) + n.z * 5.0)) * 0.75 * 0.06 / (blur + 0.06);
    }
    return colour;
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0);
    float time = u.time * 0.2;
    vec2 c = water(q, time, p.rain);
    vec2 e = vec2(0.002, 0.0);
    vec2 normal = vec2(water(q + e.xy, time, p.rain).x - c.x, water(q + e.yx, time, p.rain).x - c.x);
    float focus = p.blur * (1.0 - smoothstep(0.1, 0.3, c.x)) * (1.0 - 0.7 * c.y);
    vec3 colour = city(q + normal * 0.8, focus);
    colour += 0.15 * max(normal.y - normal.x, 0.0);
    return vec4(colour, 1.0);
}
