// Circles inside circles: the plane is folded at two lines and inverted until it is at rest.
// @param radius 1.15 0.9 1.4
// @param folds 12 2 20

float2 reflected(float2 q, float2 normal, float offset) {
    return q - 2.0 * min(0.0, dot(q, normal) - offset) * normal;
}

float2 rotated(float2 q, float a) {
    float c = cos(a), s = sin(a);
    return float2(q.x * c - q.y * s, q.x * s + q.y * c);
}

struct Rest {
    float2 place;
    float scale;
    float turns;
};

Rest settle(float2 q, float2 centre, float radius, int folds) {
    Rest r;
    r.scale = 1.0;
    r.turns = 0.0;
    float2 n1 = float2(1.0, 0.0), n2 = float2(-0.5, 0.8660254);
    for (int i = 0; i < folds; i++) {
        float2 before = q;
        q = reflected(q, n1, 0.0);
        q = reflected(q, n2, 0.0);
        float2 d = q - centre;
        float d2 = dot(d, d);
        if (d2 < radius * radius) {
            float k = radius * radius / d2;
            q = centre + d * k;
            r.scale *= k;
            r.turns += 1.0;
        }
        float2 move = q - before;
        if (dot(move, move) < 0.0000001)
            break;
    }
    r.place = q;
    return r;
}

float3 paint(float x) {
    float3 a = float3(0.5, 0.5, 0.5), c = float3(1.0, 1.0, 0.9), d = float3(0.3, 0.2, 0.15);
    return a + a * cos(6.2831853 * (c * x + d));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.1;
    float2 shift = 0.35 * float2(sin(u.time * 0.3), cos(u.time * 0.23));
    float2 d = q - shift;
    float zoom = 1.0 + 0.2 * sin(u.time * 0.2);
    q = rotated(d, 0.05 * u.time) * zoom;
    float back = dot(q, q);
    float2 m = q / max(back, 0.0001);
    float blend = smoothstep(-0.2, 0.2, sin(u.time * 0.15));
    q = mix(q, m, blend * 0.35);
    float2 centre = float2(1.0, 0.5773503) * (1.0 + 0.05 * sin(u.time * 0.5));
    Rest r = settle(q * 1.3, centre, p.radius * 0.72, int(p.folds));
    float2 local = r.place - centre;
    float ring = abs(length(local) - p.radius * 0.72) / r.scale;
    float wall = min(abs(r.place.x), abs(dot(r.place, float2(-0.5, 0.8660254)))) / r.scale;
    float line = smoothstep(0.012, 0.0, ring) + 0.6 * smoothstep(0.006, 0.0, wall);
    float3 colour = paint(r.turns * 0.11 + 0.08 * length(r.place) + 0.02 * u.time);
    colour *= 0.45 + 0.55 * smoothstep(0.0, 0.05, ring);
    float checker = step(0.5, fract(log2(r.scale + 1.0) * 2.0));
    colour *= 0.85 + 0.15 * checker;
    colour = mix(colour, float3(0.04, 0.03, 0.06), clamp(line, 0.0, 1.0));
    float spot = exp(-10.0 * dot(local, local));
    colour += 0.3 * spot * float3(1.0, 0.9, 0.7);
    return float4(colour, 1.0);
}
