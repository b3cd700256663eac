// Rows of an automaton with two states, computed for each pixel from its cone of 32 ancestors.
// @param rule 110 0 255
// @param cells 96 16 200

uint start(int word, uint salt) {
    uint n = uint(word + 65536) * 2654435761u + salt * 40503u;
    n ^= n >> 15;
    n *= 0x735a2d97u;
    n ^= n >> 15;
    return n;
}

// The bits of a line at `first` and the 63 after it, as two words.
uint2 line(int first, uint salt) {
    int word = first >> 5;
    uint shift = uint(first & 31);
    uint a = start(word, salt), b = start(word + 1, salt), c = start(word + 2, salt);
    if (shift == 0u)
        return uint2(a, b);
    return uint2((a >> shift) | (b << (32u - shift)), (b >> shift) | (c << (32u - shift)));
}

uint2 next(uint2 x, uint rule) {
    uint2 left = uint2(x.x << 1, (x.y << 1) | (x.x >> 31));
    uint2 right = uint2((x.x >> 1) | (x.y << 31), x.y >> 1);
    uint2 result = uint2(0u);
    for (uint pattern = 0u; pattern < 8u; pattern++) {
        if (((rule >> pattern) & 1u) == 0u)
            continue;
        uint2 l = (pattern & 4u) != 0u ? left : ~left;
        uint2 m = (pattern & 2u) != 0u ? x : ~x;
        uint2 r = (pattern & 1u) != 0u ? right : ~right;
        result |= l & m & r;
    }
    return result;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float aspect = u.resolution.x / u.resolution.y;
    float2 grid = float2(p.cells * aspect, p.cells);
    float2 at = float2(uv.x, 1.0 - uv.y) * grid;
    float scroll = u.time * 4.0;
    at.y += fract(scroll);
    int x = int(floor(at.x)), y = int(floor(at.y)) + int(scroll);
    uint rule = uint(p.rule);
    int age = y & 31;
    uint salt = uint(y >> 5);
    uint2 bits = line(x - 31, salt);
    uint2 before = bits;
    int alive = 0, changes = 0;
    for (int i = 0; i < age; i++) {
        before = bits;
        bits = next(bits, rule);
        uint now = (bits.x >> 31) & 1u, old = (before.x >> 31) & 1u;
        alive += int(now);
        changes += now != old ? 1 : 0;
    }
    bool isOn = ((bits.x >> 31) & 1u) != 0u;
    int around = int(popcount(bits.x >> 24)) + int(popcount(bits.y & 0xffu));
    float heat = float(changes) / max(float(age), 1.0);
    float3 on = mix(float3(0.95, 0.85, 0.6), float3(0.9, 0.3, 0.2), heat);
    float3 off = mix(float3(0.06, 0.07, 0.12), float3(0.1, 0.2, 0.3), float(around) / 16.0);
    float2 f = abs(fract(at) - 0.5);
    float inside = smoothstep(0.48, 0.4, max(f.x, f.y));
    float3 colour = isOn ? mix(on * 0.5, on, inside) : off;
    colour += 0.05 * float(alive) / 32.0;
    float seam = smoothstep(0.02, 0.0, fract((float(y) + fract(at.y)) / 32.0));
    colour = mix(colour, float3(0.3, 0.35, 0.5), seam * 0.4);
    return float4(colour, 1.0);
}
