// Gears that mesh: the teeth of each follow from those of its neighbour, with shadows and brass.
// @param speed 0.5 -3 3
// @param teeth 12 8 20

constant float tau = 6.2831853;

struct Gear {
    float2 middle;
    float count;
    float phase;
};

float gear(float2 q, float count, float phase, float module_) {
    float radius = 0.5 * count * module_;
    float r = length(q), a = atan2(q.y, q.x) + phase;
    float sector = tau / count;
    float local = (fmod(a + 20.0 * tau, sector) / sector - 0.5) * 2.0;
    float flank = 0.5 + (r - radius) / module_ * 0.35;
    float tooth = (abs(local) - (1.0 - flank)) * sector * 0.5 * r;
    float outside = r - (radius + 0.9 * module_);
    float body = r - (radius - 1.0 * module_);
    float d = min(body, max(outside, tooth * 0.85));
    float hole = 0.16 * radius - r;
    d = max(d, hole);
    float spokes = floor(3.0 + count * 0.15);
    float part = tau / spokes;
    float s = fmod(a + 20.0 * tau, part) - 0.5 * part;
    float window = max(max(abs(r - 0.52 * radius) - 0.22 * radius, 0.0), abs(s) * r - 0.34 * part * r);
    float inside = max(abs(r - 0.52 * radius) - 0.22 * radius, (abs(s) - 0.36 * part) * r);
    return max(d, -(inside + 0.0 * window));
}

float3 metal_(int kind) {
    switch (kind % 4) {
    case 0: return float3(0.85, 0.65, 0.3);
    case 1: return float3(0.7, 0.72, 0.75);
    case 2: return float3(0.8, 0.45, 0.3);
    default: return float3(0.55, 0.5, 0.4);
    }
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.0;
    float size = 0.052;
    float counts[5] = {floor(p.teeth), 20.0, 9.0, 15.0, 24.0};
    float angles[5] = {0.0, 0.35, -0.9, 2.6, -2.3};
    int parents[5] = {0, 0, 1, 0, 3};
    Gear gears[5];
    for (int i = 0; i < 5; i++) {
        Gear g;
        g.count = counts[i];
        if (i == 0) {
            g.middle = float2(-0.1, -0.05);
            g.phase = u.time * p.speed;
        } else {
            Gear other = gears[parents[i]];
            float reach = 0.5 * size * (other.count + g.count);
            float a = angles[i];
            g.middle = other.middle + reach * float2(cos(a), sin(a));
            float contact = (a + other.phase) * other.count / g.count;
            g.phase = -contact - (a + 3.1415927) + 3.1415927 / g.count;
        }
        gears[i] = g;
    }
    float soft = 3.0 / u.resolution.y;
    float2 plate = abs(fract(q * 3.0) - 0.5);
    float3 colour = float3(0.13, 0.12, 0.13) + 0.02 * sin(q.y * 300.0);
    colour *= 0.85 + 0.15 * smoothstep(0.5, 0.47, max(plate.x, plate.y));
    for (int i = 0; i < 5; i++) {
        Gear g = gears[i];
        float2 local = q - g.middle;
        float reach = 0.5 * size * g.count + 2.5 * size;
        if (dot(local, local) > reach * reach)
            continue;
        float shadow = gear(local + float2(-0.03, 0.04), g.count, g.phase, size);
        colour *= 0.55 + 0.45 * smoothstep(-0.02, 0.05, shadow);
        float d = gear(local, g.count, g.phase, size);
        float r = length(local), a = atan2(local.y, local.x);
        float brushed = 0.5 + 0.5 * sin(r * 420.0);
        float streak = pow(abs(cos(a - 0.8)), 6.0) + 0.6 * pow(abs(cos(a + 0.9)), 14.0);
        float3 paint = metal_(i) * (0.35 + 0.45 * streak + 0.08 * brushed);
        float bevel = smoothstep(-0.022, 0.0, d);
        paint *= 1.0 - 0.45 * bevel;
        paint += 0.3 * bevel * max(dot(local / max(r, 0.001), float2(-0.6, 0.8)), 0.0);
        colour = mix(colour, paint, smoothstep(soft, -soft, d));
        float axle = r - 0.035;
        colour = mix(colour, float3(0.8, 0.78, 0.75) * (0.5 + 0.5 * streak), smoothstep(soft, -soft, axle));
        float slot = max(abs(local.x * cos(g.phase) - local.y * sin(g.phase)) - 0.006, r - 0.03);
        colour = mix(colour, float3(0.1), smoothstep(soft, -soft, slot));
    }
    return float4(sqrt(colour), 1.0);
}
