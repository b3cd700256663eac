// Few colours on a coarse grid: a picture reduced with an ordered matrix made of bits.

uint spread(uint x) {
    x = (x | (x << 2)) & 0x33u;
    return (x | (x << 1)) & 0x55u;
}

// The place of (x, y) in an ordered matrix of 8 by 8, from 0 to 63.
uint bayer(uvec2 at) {
    uint x = at.x & 7u, y = at.y & 7u;
    uint bits = spread(x ^ y) | (spread(y) << 1);
    uint turned = 0u;
    for (uint i = 0u; i < 6u; i++)
        turned |= ((bits >> i) & 1u) << (5u - i);
    return turned;
}

vec3 picture(vec2 q, float time) {
    vec3 colour = mix(vec3(0.98, 0.55, 0.45), vec3(0.2, 0.15, 0.4), smoothstep(-0.1, 0.5, q.y));
    float sun = length(q - vec2(0.0, 0.08)) - 0.22;
    float stripe = step(0.5, fract(q.y * 18.0 - time * 0.2)) * smoothstep(0.1, -0.15, q.y);
    colour = mix(colour, mix(vec3(1.0, 0.9, 0.4), vec3(1.0, 0.35, 0.5), smoothstep(0.3, -0.15, q.y)),
                 smoothstep(0.005, -0.005, sun) * (1.0 - stripe));
    if (q.y < -0.05) {
        float depth = 0.12 / (-0.05 - q.y + 0.02);
        vec2 plane = vec2(q.x * depth * 4.0, depth * 3.0 + time);
        vec2 f = abs(fract(plane) - 0.5);
        float line = smoothstep(0.44, 0.48, max(f.x, f.y));
        colour = mix(vec3(0.08, 0.03, 0.2), vec3(0.2, 0.9, 0.95), line * exp(-0.12 * depth));
    }
    float palm = abs(q.x + 0.55 + 0.15 * q.y * q.y) - 0.012;
    palm = max(palm, max(q.y - 0.2, -0.2 - q.y));
    for (int i = 0; i < 5; i++) {
        float a = 0.4 + float(i) * 0.6;
        vec2 d = q - vec2(-0.55, 0.2);
        vec2 r = vec2(d.x * cos(a) + d.y * sin(a), d.y * cos(a) - d.x * sin(a));
        r.y += r.x * r.x * 1.8;
        palm = min(palm, max(abs(r.y) - 0.02 * (1.0 - r.x * 5.0), max(-r.x, r.x - 0.2)));
    }
    return mix(colour, vec3(0.05, 0.02, 0.1), smoothstep(0.004, -0.004, palm));
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    vec2 grid = floor(vec2(p.pixels, p.pixels / aspect));
    vec2 cell = floor(uv * grid);
    vec2 q = ((cell + 0.5) / grid - 0.5) * vec2(aspect, 1.0);
    vec3 colour = picture(q, u.time);
    float limit = (float(bayer(uvec2(cell))) + 0.5) / 64.0;
    float steps = floor(p.levels) - 1.0;
    vec3 scaled = colour * steps;
    vec3 low = floor(scaled);
    vec3 reduced = (low + step(vec3(limit), scaled - low)) / steps;
    vec2 f = abs(fract(uv * grid) - 0.5);
    float gap = smoothstep(0.5, 0.42, max(f.x, f.y));
    float shine = 0.92 + 0.08 * sin(uv.y * u.resolution.y * 1.5);
    return vec4(reduced * mix(0.75, 1.0, gap) * shine, 1.0);
}
