// A plant made by folding: every level mirrors, turns and shrinks the space once.
// @param levels 9 2 11
// @param spread 0.55 0.1 1.2

float stem(float2 q, float reach, float width) {
    q.y -= clamp(q.y, 0.0, reach);
    return length(q) - width * (1.0 - 0.3 * q.y);
}

float2 turned(float2 q, float a) {
    float c = cos(a), s = sin(a);
    return float2(c * q.x - s * q.y, s * q.x + c * q.y);
}

struct Plant {
    float distance;
    float level;
    float2 tip;
    float scale;
};

Plant grow(float2 q, int levels, float spread, float time) {
    Plant plant;
    plant.distance = stem(q, 0.5, 0.035);
    plant.level = 0.0;
    float scale = 1.0;
    for (int i = 1; i <= levels; i++) {
        q.y -= 0.5;
        float sway = 0.06 * sin(time + float(i) * 0.7) * float(i) / float(levels);
        q = turned(q, sway);
        q.x = abs(q.x);
        q = turned(q, spread * (0.85 + 0.05 * float(i & 3)));
        q *= 1.38;
        scale *= 1.38;
        float d = stem(q, 0.5, 0.035) / scale;
        if (d < plant.distance) {
            plant.distance = d;
            plant.level = float(i);
        }
    }
    plant.tip = q - float2(0.0, 0.5);
    plant.scale = scale;
    return plant;
}

float3 sky(float2 uv, float time) {
    float3 colour = mix(float3(0.98, 0.88, 0.72), float3(0.45, 0.65, 0.78), smoothstep(0.1, 0.95, uv.y));
    float2 d = uv - float2(0.7, 0.62);
    colour = mix(colour, float3(1.0, 0.96, 0.85), exp(-20.0 * dot(d, d)));
    float band = sin(uv.y * 30.0 + 2.0 * sin(uv.x * 5.0 + time * 0.2));
    return colour + 0.02 * smoothstep(0.5, 1.0, band);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - float2(0.5, 0.08)) * float2(u.resolution.x / u.resolution.y, 1.0) * 1.75;
    float3 colour = sky(uv, u.time);
    int levels = int(p.levels);
    float soft = 2.5 / u.resolution.y;
    for (int tree = 0; tree < 3; tree++) {
        float f = float(tree);
        float size = tree == 2 ? 1.0 : 1.5 + 0.2 * f;
        float shift = tree == 0 ? -0.95 : (tree == 1 ? 0.9 : 0.0);
        float2 at = (q - float2(shift, 0.02 - 0.02 * f)) * size;
        if (dot(at - float2(0.0, 0.8), at - float2(0.0, 0.8)) > 1.4)
            continue;
        Plant plant = grow(at, levels, p.spread + 0.1 * f, u.time + f);
        float d = plant.distance / size;
        float young = plant.level / float(levels);
        float3 bark = mix(float3(0.22, 0.14, 0.1), float3(0.35, 0.42, 0.15), young);
        bark = mix(float3(0.5, 0.55, 0.55), bark, tree == 2 ? 1.0 : 0.55);
        colour = mix(colour, bark, smoothstep(soft, -soft, d));
        float leaf = (length(plant.tip * float2(1.0, 0.7)) - 0.28) / (plant.scale * size);
        float3 green = mix(float3(0.95, 0.55, 0.6), float3(0.55, 0.7, 0.25), 0.5 + 0.5 * sin(plant.tip.x * 9.0 + f * 2.0));
        green = mix(float3(0.7, 0.72, 0.65), green, tree == 2 ? 1.0 : 0.6);
        colour = mix(colour, green, smoothstep(soft, -soft, leaf) * 0.9);
    }
    float ground = 0.02 * sin(q.x * 4.0) + 0.01 * sin(q.x * 11.0);
    float grass = ground + 0.025 * abs(fract(q.x * 24.0 + 0.3 * sin(u.time + q.x * 3.0)) - 0.5);
    colour = mix(colour, mix(float3(0.25, 0.35, 0.12), float3(0.45, 0.52, 0.2), uv.y * 8.0), smoothstep(0.004, -0.004, q.y - grass));
    return float4(colour, 1.0);
}
