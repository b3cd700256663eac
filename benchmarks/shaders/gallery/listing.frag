// A listing of a program on a terminal: rows of words as blocks of letters, colours by kind.

uint mixed(uint a, uint b) {
    uint n = a * 0x9e3779b1u + b * 0x85ebca77u;
    n ^= n >> 15;
    n *= 0xc2b2ae3du;
    return n ^ (n >> 13);
}

float unit(uint n) {
    return float(n & 0xffffffu) / 16777216.0;
}

// Letters of three by five points; 15 bits each.
uint letter(uint which) {
    switch (which % 16u) {
    case 0u: return 0x5b6fu;
    case 1u: return 0x3bebu;
    case 2u: return 0x624eu;
    case 3u: return 0x3b6bu;
    case 4u: return 0x73cfu;
    case 5u: return 0x13cfu;
    case 6u: return 0x6b4eu;
    case 7u: return 0x5bedu;
    case 8u: return 0x7497u;
    case 9u: return 0x7249u;
    case 10u: return 0x5b6bu;
    case 11u: return 0x2b6au;
    case 12u: return 0x1befu;
    case 13u: return 0x5aebu;
    case 14u: return 0x388eu;
    default: return 0x2497u;
    }
}

float point(uint bits, vec2 f) {
    ivec2 at = ivec2(floor(f * vec2(4.0, 7.0)));
    if (at.x > 2 || at.y < 1 || at.y > 5)
        return 0.0;
    uint on = (bits >> uint((at.y - 1) * 3 + at.x)) & 1u;
    vec2 local = fract(f * vec2(4.0, 7.0)) - 0.5;
    return float(on) * smoothstep(0.62, 0.4, max(abs(local.x), abs(local.y)));
}

vec3 kindColour(uint kind) {
    switch (kind) {
    case 0u:
    case 1u: return vec3(0.8, 0.82, 0.78);
    case 2u: return vec3(0.95, 0.5, 0.45);
    case 3u: return vec3(0.55, 0.8, 0.95);
    case 4u: return vec3(0.95, 0.8, 0.45);
    case 5u: return vec3(0.6, 0.85, 0.5);
    default: return vec3(0.75, 0.6, 0.9);
    }
}

// Walks over the words of a row to the column; gives the word's number and the place in it.
ivec3 wordAt(uint row, int column, int indent) {
    int at = indent, words = 3 + int(mixed(row, 5u) % 7u);
    if (mixed(row, 77u) % 7u == 0u)
        words = 0;
    for (int word = 0; word < words; word++) {
        int size = 2 + int(mixed(row, uint(word) + 100u) % 8u);
        if (column < at)
            break;
        if (column < at + size)
            return ivec3(word, column - at, size);
        at += size + 1;
    }
    return ivec3(-1, 0, 0);
}

vec4 shade(vec2 uv) {
    float aspect = u.resolution.x / u.resolution.y;
    vec2 at = uv - 0.5;
    at *= 1.0 + 0.06 * dot(at, at) * 4.0;
    if (max(abs(at.x), abs(at.y)) > 0.5)
        return vec4(0.01, 0.01, 0.01, 1.0);
    vec2 grid = vec2(p.rows * aspect * 1.7, p.rows);
    vec2 q = vec2(at.x + 0.5, 0.5 - at.y) * grid;
    q.y += floor(u.time * p.scroll);
    uint row = uint(floor(q.y));
    int column = int(floor(q.x));
    vec2 f = fract(q);
    vec3 colour = vec3(0.06, 0.07, 0.09);
    if (column < 4) {
        uint place = column == 0 ? 100u : (column == 1 ? 10u : 1u);
        uint digit = (row / place) % 10u;
        float on = column < 3 ? point(letter(digit + 3u), f) : 0.0;
        colour = vec3(0.045, 0.05, 0.065) + on * 0.25;
    } else {
        int depth = int(mixed(row / 3u, 9u) % 4u) + int(mixed(row, 2u) & 1u);
        ivec3 word = wordAt(row, column, 5 + depth * 3);
        float cursorRow = floor(u.time * p.scroll) + floor(grid.y * 0.6);
        if (float(row) == cursorRow)
            colour += 0.035;
        if (word.x >= 0) {
            uint name = mixed(row, uint(word.x) + 100u);
            uint kind = word.x == 0 && depth > 1 ? 2u : (name >> 5) % 7u;
            uint which = mixed(name, uint(word.y)) >> 4;
            colour += kindColour(kind) * point(letter(which), f);
            if (kind == 4u && word.y == word.z - 1)
                colour += 0.15 * step(0.85, f.y);
        }
        bool blink = fract(u.time) < 0.5;
        if (blink && float(row) == cursorRow && column == 5 + int(mod(u.time * 3.0, 40.0)))
            colour = mix(colour, vec3(0.9), 0.8);
        float guide = step(abs(f.x), 0.06) * step(fract(float(column - 5) / 3.0), 0.01) * step(float(column), float(5 + depth * 3 - 1));
        colour += guide * 0.08;
    }
    float scan = 0.93 + 0.07 * sin(uv.y * u.resolution.y * 2.0943951);
    colour *= scan * (1.1 - 0.9 * dot(at, at));
    return vec4(colour, 1.0);
}
