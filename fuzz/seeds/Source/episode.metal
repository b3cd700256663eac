// @episode Rose
// @still 2.5
// @variations 1 3
// @param speed 0.6 0.0 3.0 How fast
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) { return float4(uv, p.speed, 1); }
