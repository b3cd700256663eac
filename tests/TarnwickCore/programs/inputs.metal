//@param gain 1 0 4
float4 shade(float2 uv, constant Uniforms& u,
             constant Params& p, Inputs in) {
    return in.previous(uv) * 0.9 + in.band(uv.x) * p.gain;
}
