// @param lamps 8 1 8
// @param shine 24 2 100

struct Lamp {
    float3 at;
    float3 colour;
};

void addLight(thread float3& sum, float3 q, float3 n, Lamp lamp, float shine) {
    float3 way = lamp.at - q;
    float square = dot(way, way);
    float3 direction = way * rsqrt(square);
    float3 half_ = normalize(direction + float3(0, 0, 1));
    sum += lamp.colour * (saturate(dot(n, direction)) + pow(saturate(dot(n, half_)), shine)) / (0.4 + square * 3.0);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = (uv - 0.5) * u.resolution / u.resolution.y * 2.0;
    Lamp lamps[8];
    for (int i = 0; i < 8; i++) {
        float a = float(i) * 0.785398 + u.time * 0.5;
        lamps[i].at = float3(cos(a), sin(a * 1.3), 0.35);
        lamps[i].colour = 0.5 + 0.5 * cos(float(i) + float3(0, 2, 4));
    }
    float2 wave = float2(cos(q.x * 12.0), cos(q.y * 12.0)) * 0.35;
    float3 n = normalize(float3(wave, 1.0));
    float3 sum = float3(0.02);
    int count = int(p.lamps);
    for (int i = 0; i < count; i++)
        addLight(sum, float3(q, 0.0), n, lamps[i], p.shine);
    return float4(sum / (1.0 + sum), 1.0);
}
