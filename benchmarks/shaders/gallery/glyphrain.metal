// Falling columns of small letters: glyphs of five by seven points from a hash, masked by symmetry.
// @param columns 64 16 128
// @param speed 6 1 20

uint mixed(uint n) {
    n = (n ^ 61u) ^ (n >> 16);
    n *= 9u;
    n ^= n >> 4;
    n *= 0x27d4eb2du;
    return n ^ (n >> 15);
}

float unit(uint n) {
    return float(mixed(n) & 0xffffu) / 65535.0;
}

// Whether the point at (x, y) of a glyph is on. Glyphs mirror on x, as many letters do.
float glyph(uint code, float2 f) {
    int x = int(f.x * 7.0) - 1, y = int(f.y * 9.0) - 1;
    if (x < 0 || x > 4 || y < 0 || y > 6)
        return 0.0;
    if ((code & 1u) != 0u && x > 2)
        x = 4 - x;
    uint bits = mixed(code * 31u + 7u);
    uint row = (bits >> uint(y * 4)) & 15u;
    if (y == 6)
        row = (bits >> 3) & 15u;
    bool isOn = ((row >> uint(min(x, 3))) & 1u) != 0u;
    if (x == 4)
        isOn = (row & 9u) == 9u;
    float2 point = fract(f * float2(7.0, 9.0)) - 0.5;
    return isOn ? smoothstep(0.55, 0.35, length(point)) : 0.0;
}

float3 column(float2 q, float time, uint salt, float speed) {
    uint id = uint(int(floor(q.x)) + 1000) + salt * 7919u;
    float pace = speed * (0.4 + unit(id));
    float length_ = 12.0 + 16.0 * unit(id + 5u);
    float head = time * pace + unit(id + 9u) * 60.0;
    float row = floor(q.y);
    float behind = fmod(head - row + 600.0, length_ * 2.0);
    float light = behind < length_ ? 1.0 - behind / length_ : 0.0;
    if (light <= 0.0)
        return float3(0.0);
    uint changes = uint(floor(time * (0.5 + 4.0 * unit(id + 3u))));
    uint code = mixed(id * 131u + uint(int(row) + 4096) * 17u + (behind < 3.0 ? changes * 101u : 0u));
    float on = glyph(code & 1023u, fract(q));
    float3 paint = behind < 1.0 ? float3(0.85, 1.0, 0.9) : float3(0.1, 0.9, 0.35) * light;
    return paint * on + float3(0.0, 0.05, 0.02) * light;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float aspect = u.resolution.x / u.resolution.y;
    float2 at = uv - 0.5;
    at *= 1.0 + 0.08 * dot(at, at);
    float2 grid = float2(p.columns, p.columns / aspect * 0.8);
    float3 colour = float3(0.0);
    for (uint layer = 0u; layer < 3u; layer++) {
        float scale = 1.0 + 0.6 * float(layer);
        float2 q = float2(at.x, -at.y) * grid / scale + float2(float(layer) * 13.7, 80.0);
        float dim = 1.0 / (1.0 + float(layer) * 1.4);
        colour += column(q, u.time, layer, p.speed / scale) * dim;
    }
    float line = 0.9 + 0.1 * sin(uv.y * u.resolution.y * 3.1415927);
    colour *= line * smoothstep(0.75, 0.3, length(at));
    return float4(colour, 1.0);
}
