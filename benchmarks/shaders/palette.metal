// @param speed 0.4 0 2

constant float3 colours[8] = {
    float3(0.02, 0.02, 0.10), float3(0.15, 0.05, 0.35), float3(0.45, 0.10, 0.40),
    float3(0.80, 0.25, 0.30), float3(0.95, 0.55, 0.25), float3(1.00, 0.85, 0.45),
    float3(0.60, 0.80, 0.60), float3(0.10, 0.40, 0.55)};

float3 paletteAt(float x) {
    x = fract(x) * 8.0;
    int i = int(x);
    return mix(colours[i & 7], colours[(i + 1) & 7], x - float(i));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 c = 0.7885 * float2(cos(u.time * p.speed + 2.0), sin(u.time * p.speed + 2.0));
    float2 z = (uv - 0.5) * u.resolution / u.resolution.y * 3.0;
    float trap = 10.0;
    for (int i = 0; i < 48; i++) {
        z = float2(z.x * z.x - z.y * z.y, 2.0 * z.x * z.y) + c;
        float square = dot(z, z);
        trap = min(trap, square);
        if (square > 64.0) break;
    }
    return float4(paletteAt(sqrt(trap) * 1.5), 1.0);
}
