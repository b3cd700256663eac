// A word in neon, each letter a distance made of arcs and bars; a flicker for one tube.
// @param tube 0.022 0.005 0.06
// @param haze 0.5 0 1

float bar(float2 q, float2 a, float2 b) {
    float2 d = b - a, r = q - a;
    return length(r - d * clamp(dot(r, d) / dot(d, d), 0.0, 1.0));
}

// An arc around c of radius r, open for |angle - towards| > half its opening.
float arc(float2 q, float2 c, float r, float towards, float opening) {
    float2 d = q - c;
    float a = atan2(d.y, d.x) - towards;
    a = fmod(a + 9.424778, 6.2831853) - 3.1415927;
    if (abs(a) <= opening)
        return abs(length(d) - r);
    float s = opening * sign(a) + towards;
    return length(d - r * float2(cos(s), sin(s)));
}

float letter(float2 q, int which) {
    switch (which) {
    case 0: // s
        return min(arc(q, float2(0.0, 0.22), 0.22, 2.0, 2.2), arc(q, float2(0.0, -0.22), 0.22, -1.1416, 2.2));
    case 1: // h
        return min(min(bar(q, float2(-0.2, 0.45), float2(-0.2, -0.45)), bar(q, float2(0.2, 0.45), float2(0.2, -0.45))),
                   bar(q, float2(-0.2, 0.0), float2(0.2, 0.0)));
    case 2: // a
        return min(min(bar(q, float2(-0.24, -0.45), float2(0.0, 0.45)), bar(q, float2(0.24, -0.45), float2(0.0, 0.45))),
                   bar(q, float2(-0.14, -0.12), float2(0.14, -0.12)));
    case 3: // d
        return min(bar(q, float2(-0.2, 0.45), float2(-0.2, -0.45)), arc(q * float2(0.95, 1.0), float2(-0.2, 0.0), 0.45, 0.0, 1.57));
    case 4: // e
        return min(min(bar(q, float2(-0.2, 0.45), float2(-0.2, -0.45)), bar(q, float2(-0.2, 0.45), float2(0.2, 0.45))),
                   min(bar(q, float2(-0.2, 0.0), float2(0.14, 0.0)), bar(q, float2(-0.2, -0.45), float2(0.2, -0.45))));
    default: { // r
        float stem = bar(q, float2(-0.2, 0.45), float2(-0.2, -0.45));
        float bow = arc(q, float2(-0.02, 0.22), 0.22, 0.0, 1.6);
        float caps = min(bar(q, float2(-0.2, 0.44), float2(-0.02, 0.44)), bar(q, float2(-0.2, 0.0), float2(-0.02, 0.0)));
        return min(min(stem, bow), min(caps, bar(q, float2(0.0, 0.0), float2(0.22, -0.45))));
    }
    }
}

float brick(float2 q) {
    float row = floor(q.y);
    q.x += fmod(abs(row), 2.0) * 0.5;
    float2 f = abs(fract(q) - 0.5);
    float tone = fract(sin(dot(float2(floor(q.x), row), float2(12.9, 78.2))) * 437.5);
    return (0.6 + 0.4 * tone) * smoothstep(0.5, 0.47, f.x) * smoothstep(0.5, 0.43, f.y);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.4;
    float wall = brick(q * float2(3.0, 7.0));
    float3 colour = float3(0.07, 0.045, 0.05) * wall;
    for (int i = 0; i < 6; i++) {
        float2 local = q - float2((float(i) - 2.5) * 0.62, 0.1);
        float d = letter(local, i);
        float power = 1.0;
        if (i == 3) {
            float beat = sin(u.time * 31.0) * sin(u.time * 17.3);
            power = beat > 0.4 ? 0.25 : 1.0;
        }
        float3 paint = mix(float3(1.0, 0.15, 0.5), float3(0.15, 0.7, 1.0), float(i) / 5.0);
        float core = smoothstep(p.tube, p.tube * 0.3, d);
        float glow = 0.012 / (d * d + 0.012);
        colour += (paint * glow * (0.35 + 0.65 * wall * p.haze) + core * 0.9) * power;
    }
    float line = abs(q.y + 0.62 + 0.04 * sin(q.x * 3.0 + u.time));
    float inside = smoothstep(1.75, 1.65, abs(q.x));
    colour += float3(1.0, 0.75, 0.2) * inside * (0.004 / (line * line + 0.004) * 0.5 + smoothstep(p.tube * 0.7, 0.0, line));
    return float4(1.0 - exp(-colour * 1.2), 1.0);
}
