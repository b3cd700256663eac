// @param speed 0.5 0 2

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float3 top = float3(0.10, 0.20, 0.45), bottom = float3(0.95, 0.60, 0.30);
    float swing = 0.5 + 0.5 * sin(u.time * p.speed + uv.x * 3.0);
    return float4(mix(bottom, top, saturate(uv.y + 0.2 * swing)), 1.0);
}
