// Snow in many layers over hills and firs; each layer is a grid of cells with one flake.

float hash(vec2 q) {
    ivec2 c = ivec2(floor(q * 10.0));
    uint n = uint(c.x + 65536) * 1597334673u ^ uint(c.y + 65536) * 3812015801u;
    n = (n ^ (n >> 15)) * 2246822519u;
    return float((n ^ (n >> 13)) & 0xffffffu) / 16777216.0;
}

float hill(float x, float seed) {
    return 0.12 * sin(x * 1.3 + seed) + 0.06 * sin(x * 2.9 + seed * 2.0) + 0.02 * sin(x * 9.0 + seed);
}

float fir(vec2 q) {
    float d = 10.0;
    for (int i = 0; i < 4; i++) {
        float f = float(i);
        float width = 0.24 - 0.045 * f;
        vec2 at = q - vec2(0.0, 0.12 + 0.17 * f);
        float side = abs(at.x) / width + at.y / 0.26;
        d = min(d, max(side - 1.0, -at.y * 4.0) * 0.2);
    }
    vec2 trunk = abs(q - vec2(0.0, 0.05)) - vec2(0.025, 0.08);
    return min(d, max(trunk.x, trunk.y));
}

float flakes(vec2 q, float layer, float time, float wind) {
    float scale = 4.0 + layer * 1.6;
    float speed = 1.1 / (1.0 + 0.12 * layer);
    vec2 at = q * scale;
    at.y += time * speed * 2.0;
    at.x += wind * time * speed + layer * 7.3 + 0.4 * sin(at.y * 0.4 + time * 0.5 + layer);
    vec2 cell = floor(at), f = fract(at);
    float n = hash(cell + layer * 13.0);
    if (n < 0.35)
        return 0.0;
    vec2 middle = vec2(hash(cell + 3.1), hash(cell + 5.7)) * 0.6 + 0.2;
    middle.x += 0.12 * sin(time * (1.0 + n) + n * 30.0);
    float size = 0.05 + 0.07 * hash(cell + 9.2);
    float blur = 0.02 + 0.05 * smoothstep(6.0, 0.0, layer);
    return smoothstep(size + blur, size - blur, length(f - middle)) * (0.95 - 0.035 * layer);
}

vec4 shade(vec2 uv) {
    vec2 q = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0);
    vec3 colour = mix(vec3(0.75, 0.78, 0.85), vec3(0.25, 0.33, 0.48), smoothstep(-0.2, 0.5, q.y));
    vec2 moon = q - vec2(0.45, 0.3);
    colour += 0.35 * smoothstep(0.072, 0.068, length(moon)) + 0.02 / (0.1 + dot(moon, moon) * 8.0);
    for (int i = 0; i < 4; i++) {
        float f = float(i);
        float x = q.x * (1.6 - 0.2 * f) + f * 3.7;
        float top = hill(x, f * 2.3) - 0.08 - 0.1 * f;
        vec3 snow = mix(vec3(0.55, 0.62, 0.75), vec3(0.92, 0.94, 1.0), f / 3.0);
        float spacing = 0.16 + 0.07 * f;
        float slot = floor(q.x / spacing);
        float n = hash(vec2(slot, f * 17.0));
        float middle = (slot + 0.5 + 0.3 * (n - 0.5)) * spacing;
        float foot = hill(middle * (1.6 - 0.2 * f) + f * 3.7, f * 2.3) - 0.1 - 0.1 * f;
        if (n > 0.4) {
            float size = spacing * (0.9 + 0.6 * n);
            vec2 local = (vec2(q.x - middle, q.y - foot)) / size;
            float tree = fir(local);
            float cap = smoothstep(0.0, 0.06, fract(local.y * 5.9 - 0.7) - 0.55);
            vec3 needle = mix(vec3(0.2, 0.3, 0.35), vec3(0.06, 0.15, 0.13), f / 3.0);
            colour = mix(colour, mix(needle, snow, 0.6 * cap), smoothstep(0.01, -0.01, tree));
        }
        float ground = smoothstep(0.004, -0.004, q.y - top);
        colour = mix(colour, snow * (0.85 + 0.15 * smoothstep(-0.2, 0.0, q.y - top)), ground);
    }
    int layers = int(p.layers);
    for (int i = 0; i < layers; i++)
        colour = mix(colour, vec3(1.0), flakes(q, float(layers - 1 - i), u.time, p.wind));
    return vec4(colour, 1.0);
}
