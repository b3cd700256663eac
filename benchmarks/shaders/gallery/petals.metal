// A rose of many layers in polar coordinates, each petal shaded by its place in the spiral.
// @param petals 5 3 12
// @param bloom 0.6 0 1

float3 mixPetal(float3 below, float3 above, float d, float soft) {
    return mix(below, above, smoothstep(soft, -soft, d));
}

float hash(float n) {
    return fract(sin(n * 91.3458) * 47453.5453);
}

float outline(float angle, float count, float radius, float sharp) {
    float sector = 6.2831853 / count;
    float a = fmod(angle + 25.132741, sector) - 0.5 * sector;
    float k = cos(a * count * 0.5);
    return radius * (0.62 + 0.38 * pow(max(k, 0.0), sharp));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * float2(u.resolution.x / u.resolution.y, 1.0) * 2.2;
    float r = length(q), a = atan2(q.y, q.x);
    float breath = p.bloom * (0.9 + 0.1 * sin(u.time * 0.8));
    float3 colour = mix(float3(0.12, 0.2, 0.14), float3(0.03, 0.06, 0.05), smoothstep(0.0, 1.4, r));
    float soft = 0.008;
    for (int i = 0; i < 3; i++) {
        float f = float(i);
        float leafAngle = a + f * 2.2 + 0.4;
        float leaf = r - outline(leafAngle, 3.0, 1.15 - 0.05 * f, 3.0);
        float vein = abs(sin(leafAngle * 1.5)) * r;
        float3 green = mix(float3(0.1, 0.35, 0.12), float3(0.3, 0.55, 0.2), smoothstep(0.0, 0.05, vein));
        green *= 0.7 + 0.3 * cos(leafAngle * 18.0 + r * 12.0);
        colour = mixPetal(colour, green, leaf, soft);
    }
    float count = floor(p.petals);
    for (int i = 0; i < 9; i++) {
        float f = float(i) / 9.0;
        float size = (0.95 - 0.9 * f) * (0.45 + 0.55 * breath);
        float turn = float(i) * 2.3999632 + 0.1 * u.time * (1.0 - f);
        float wobble = 0.03 * sin(a * 7.0 + hash(float(i)) * 6.0 + r * 9.0);
        float edge = r + wobble - outline(a + turn, count, size, 0.6);
        float inner = clamp(r / size, 0.0, 1.0);
        float streak = 0.5 + 0.5 * sin((a + turn) * count * 6.0 + sin(r * 20.0));
        float3 deep = mix(float3(0.55, 0.02, 0.12), float3(0.85, 0.3, 0.1), f);
        float3 pale = mix(float3(1.0, 0.55, 0.65), float3(1.0, 0.9, 0.55), f);
        float3 petal = mix(deep, pale, smoothstep(0.2, 1.0, inner));
        petal *= 0.88 + 0.12 * streak;
        petal *= 0.65 + 0.35 * smoothstep(-0.2, 0.0, -edge - 0.02) + 0.2 * smoothstep(-0.03, 0.0, edge);
        float shadow = smoothstep(0.12, -0.02, edge);
        colour *= 1.0 - 0.45 * shadow * smoothstep(-0.01, 0.01, edge);
        colour = mixPetal(colour, petal, edge, soft);
    }
    for (int i = 0; i < 40; i++) {
        float f = float(i);
        float angle = f * 2.3999632;
        float2 seed = 0.016 * sqrt(f) * float2(cos(angle), sin(angle));
        float d = length(q - seed) - 0.011;
        colour = mixPetal(colour, mix(float3(0.35, 0.2, 0.02), float3(0.95, 0.8, 0.2), f / 40.0), d, 0.004);
    }
    return float4(colour, 1.0);
}
