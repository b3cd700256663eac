// @particles 1000
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { return Particle{float2(id)}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) { q.at += 0.1; }
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.01); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(1.0); }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    return trails.at(uv);
}
