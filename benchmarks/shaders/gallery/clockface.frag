// A clock of seven segments and a dial, both from distances; a switch knows the digits.

uint segments(int digit) {
    switch (digit) {
    case 0: return 0x3fu;
    case 1: return 0x06u;
    case 2: return 0x5bu;
    case 3: return 0x4fu;
    case 4: return 0x66u;
    case 5: return 0x6du;
    case 6: return 0x7du;
    case 7: return 0x07u;
    case 8: return 0x7fu;
    default: return 0x6fu;
    }
}

float bar(vec2 q, vec2 a, vec2 b) {
    vec2 d = b - a, r = q - a;
    return length(r - d * clamp(dot(r, d) / dot(d, d), 0.0, 1.0));
}

float digit(vec2 q, int value) {
    uint mask = segments(value);
    float d = 10.0;
    for (uint i = 0u; i < 7u; i++) {
        if (((mask >> i) & 1u) == 0u)
            continue;
        vec2 a, b;
        switch (i) {
        case 0u: a = vec2(-0.32, 0.7); b = vec2(0.32, 0.7); break;
        case 1u: a = vec2(0.4, 0.62); b = vec2(0.4, 0.08); break;
        case 2u: a = vec2(0.4, -0.08); b = vec2(0.4, -0.62); break;
        case 3u: a = vec2(-0.32, -0.7); b = vec2(0.32, -0.7); break;
        case 4u: a = vec2(-0.4, -0.08); b = vec2(-0.4, -0.62); break;
        case 5u: a = vec2(-0.4, 0.62); b = vec2(-0.4, 0.08); break;
        default: a = vec2(-0.32, 0.0); b = vec2(0.32, 0.0); break;
        }
        d = min(d, bar(q, a, b));
    }
    return d - 0.06;
}

float hand(vec2 q, float turns, float reach, float width) {
    float a = turns * 6.2831853;
    return bar(q, vec2(0.0), reach * vec2(sin(a), cos(a))) - width;
}

vec4 shade(vec2 uv) {
    vec2 at = (uv - 0.5) * vec2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float seconds = p.hours * 3600.0 + u.time;
    float soft = 3.0 / u.resolution.y;
    float r = length(at), angle = atan(at.x, at.y) / 6.2831853 + 1.0;
    vec3 colour = mix(vec3(0.1, 0.1, 0.13), vec3(0.03, 0.03, 0.05), r);
    float disc = smoothstep(soft, -soft, r - 0.95);
    colour = mix(colour, vec3(0.13, 0.14, 0.18) * (1.2 - 0.4 * r), disc);
    float minute = abs(fract(angle * 60.0 + 0.5) - 0.5) / 60.0 * 6.2831853 * r;
    float hour = abs(fract(angle * 12.0 + 0.5) - 0.5) / 12.0 * 6.2831853 * r;
    float ticks = smoothstep(soft, -soft, max(minute - 0.004, abs(r - 0.88) - 0.02));
    ticks = max(ticks, smoothstep(soft, -soft, max(hour - 0.012, abs(r - 0.86) - 0.05)));
    colour = mix(colour, vec3(0.8, 0.8, 0.75), ticks);
    int total = int(seconds);
    int hh = (total / 3600) % 24, mm = (total / 60) % 60, ss = total % 60;
    float lit = 10.0;
    for (int i = 0; i < 6; i++) {
        int pair = i < 2 ? hh : (i < 4 ? mm : ss);
        int value = (i & 1) == 0 ? pair / 10 : pair % 10;
        float x = float(i) - 2.5 + 0.3 * float(i / 2 - 1);
        lit = min(lit, digit((at - vec2(x * 0.17, -0.35)) * 6.5, value));
    }
    for (int i = 0; i < 4; i++) {
        vec2 dot_ = vec2((i & 1) == 0 ? -0.195 : 0.195, i < 2 ? -0.31 : -0.39);
        lit = min(lit, (length(at - dot_) - 0.012) * 6.5);
    }
    colour += vec3(1.0, 0.35, 0.1) * (smoothstep(soft * 6.0, -soft * 6.0, lit) + p.glow / (max(lit, 0.0) + 0.05) * disc);
    float shadow = min(hand(at + 0.015, seconds / 43200.0, 0.45, 0.02), hand(at + 0.015, seconds / 3600.0, 0.7, 0.012));
    colour *= 0.6 + 0.4 * smoothstep(-0.01, 0.04, shadow);
    colour = mix(colour, vec3(0.95), smoothstep(soft, -soft, hand(at, seconds / 43200.0, 0.45, 0.018)));
    colour = mix(colour, vec3(0.9), smoothstep(soft, -soft, hand(at, seconds / 3600.0, 0.72, 0.011)));
    colour = mix(colour, vec3(1.0, 0.2, 0.15), smoothstep(soft, -soft, hand(at, fract(seconds / 60.0), 0.8, 0.004)));
    return vec4(colour, 1.0);
}
