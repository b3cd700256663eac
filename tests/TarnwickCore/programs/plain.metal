float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(uv, 0.5 + 0.5 * sin(u.time), 1.0);
}