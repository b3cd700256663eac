// Rows of an automaton with two states, computed for each pixel from its cone of 32 ancestors.

uint start(int word, uint salt) {
    uint n = uint(word + 65536) * 2654435761u + salt * 40503u;
    n ^= n >> 15;
    n *= 0x735a2d97u;
    n ^= n >> 15;
    return n;
}

// The bits of a line at `first` and the 63 after it, as two words.
uvec2 line(int first, uint salt) {
    int word = first >> 5;
    uint shift = uint(first & 31);
    uint a = start(word, salt), b = start(word + 1, salt), c = start(word + 2, salt);
    if (shift == 0u)
        return uvec2(a, b);
    return uvec2((a >> shift) | (b << (32u - shift)), (b >> shift) | (c << (32u - shift)));
}

uvec2 next(uvec2 x, uint rule) {
    uvec2 left = uvec2(x.x << 1, (x.y << 1) | (x.x >> 31));
    uvec2 right = uvec2((x.x >> 1) | (x.y << 31), x.y >> 1);
    uvec2 result = uvec2(0u);
    for (uint pattern = 0u; pattern < 8u; pattern++) {
        if (((rule >> pattern) & 1u) == 0u)
            continue;
        uvec2 l = (pattern & 4u) != 0u ? left : ~left;
        uvec2 m = (pattern & 2u) != 0u ? x : ~x;
        uvec2 r = (pattern & 1u) != 0u ? right : ~right;
        result |= l & m & r;
    }
    return result;
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    vec2 grid = vec2(p.cells * aspect, p.cells);
    vec2 at = vec2(uv.x, 1.0 - uv.y) * grid;
    float scroll = u.time * 4.0;
    at.y += fract(scroll);
    int x = int(floor(at.x)), y = int(floor(at.y)) + int(scroll);
    uint rule = uint(p.rule);
    int age = y & 31;
    uint salt = uint(y >> 5);
    uvec2 bits = line(x - 31, salt);
    uvec2 before = bits;
    int alive = 0, changes = 0;
    for (int i = 0; i < age; i++) {
        before = bits;
        bits = next(bits, rule);
        uint now = (bits.x >> 31) & 1u, old = (before.x >> 31) & 1u;
        alive += int(now);
        changes += now != old ? 1 : 0;
    }
    bool isOn = ((bits.x >> 31) & 1u) != 0u;
    int around = int(bitCount(bits.x >> 24)) + int(bitCount(bits.y & 0xffu));
    float heat = float(changes) / max(float(age), 1.0);
    vec3 on = mix(vec3(0.95, 0.85, 0.6), vec3(0.9, 0.3, 0.2), heat);
    vec3 off = mix(vec3(0.06, 0.07, 0.12), vec3(0.1, 0.2, 0.3), float(around) / 16.0);
    vec2 f = abs(fract(at) - 0.5);
    float inside = smoothstep(0.48, 0.4, max(f.x, f.y));
    vec3 colour = isOn ? mix(on * 0.5, on, inside) : off;
    colour += 0.05 * float(alive) / 32.0;
    float seam = smoothstep(0.02, 0.0, fract((float(y) + fract(at.y)) / 32.0));
    colour = mix(colour, vec3(0.3, 0.35, 0.5), seam * 0.4);
    return vec4(colour, 1.0);
}
