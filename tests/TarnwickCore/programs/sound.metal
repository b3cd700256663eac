// @param pitch 220 55 880 Pitch in hertz
// @param glow 0.5 0 1
    float2 sound(float t, constant Params& p) {
    return float2(sin(t * p.pitch * 6.2831853));
}
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(p.glow);
}
