// A knitted pattern: stitches as pairs of slanted ellipses, colours from symmetric numbers.

float hash(vec2 q) {
    return fract(sin(dot(q, vec2(41.23, 289.77))) * 23758.5453);
}

// Rows of a motif of 16 columns, mirrored; 16 bits each.
uint motif(int row) {
    switch (row & 15) {
    case 0: return 0xffffu;
    case 1: return 0x0000u;
    case 2: return 0x8181u;
    case 3: return 0xc3c3u;
    case 4: return 0x6666u;
    case 5: return 0x3c3cu;
    case 6: return 0x1818u;
    case 7: return 0x3c3cu;
    case 8: return 0x6666u;
    case 9: return 0xc3c3u;
    case 10: return 0x8181u;
    case 11: return 0x0000u;
    case 12: return 0xffffu;
    case 13: return 0x5555u;
    case 14: return 0xaaaau;
    default: return 0x5555u;
    }
}

vec3 wool(ivec2 stitch) {
    uint bits = motif(stitch.y);
    bool isOn = ((bits >> uint(stitch.x & 15)) & 1u) != 0u;
    int band = (stitch.y >> 4) % 3;
    vec3 ground = band == 0 ? vec3(0.12, 0.2, 0.35) : (band == 1 ? vec3(0.5, 0.12, 0.14) : vec3(0.15, 0.3, 0.2));
    vec3 figure = band == 1 ? vec3(0.95, 0.88, 0.7) : vec3(0.9, 0.85, 0.82);
    return isOn ? figure : ground;
}

float strand(vec2 q, float lean) {
    q = vec2(q.x * cos(lean) - q.y * sin(lean), q.x * sin(lean) + q.y * cos(lean));
    return length(q / vec2(0.2, 0.62));
}

vec4 shade(vec2 uv) {
    vec2 q = uv * vec2(u.resolution.x / u.resolution.y, 1.0) * p.stitches;
    q += 0.15 * vec2(sin(q.y * 0.3 + u.time), cos(q.x * 0.25 + u.time * 0.7));
    q.y += u.time * 0.5;
    vec3 colour = vec3(0.03, 0.03, 0.04);
    float top = 0.0;
    for (int dy = 1; dy >= -1; dy--) {
        for (int side = 0; side < 2; side++) {
            vec2 at = vec2(q.x, q.y + float(dy));
            ivec2 stitch = ivec2(floor(at));
            vec2 f = fract(at);
            f.y -= float(dy) ;
            float middle = side == 0 ? 0.27 : 0.73;
            float lean = side == 0 ? -0.45 : 0.45;
            vec2 local = f - vec2(middle, 0.5);
            float d = strand(local, lean);
            if (d > 1.0)
                continue;
            float round_ = sqrt(1.0 - d * d);
            float n = hash(vec2(stitch) + float(side) * 0.5);
            float ply = 0.5 + 0.5 * sin((local.y + local.x * (side == 0 ? 1.2 : -1.2)) * 26.0 + n * 6.0);
            float fibre = hash(floor(q * 40.0)) * p.fuzz;
            float light = (0.45 + 0.55 * round_) * (0.82 + 0.18 * ply) * (0.92 + 0.16 * (fibre - 0.25));
            if (round_ > top) {
                top = round_;
                colour = wool(stitch) * light * (0.95 + 0.1 * n);
            }
        }
    }
    vec2 v = uv - 0.5;
    colour *= 1.1 - 0.6 * dot(v, v);
    return vec4(colour, 1.0);
}
