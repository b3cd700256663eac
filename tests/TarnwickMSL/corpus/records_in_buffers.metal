// Whole records copied from device memory, changed, and back; arrays of records.
// @runs check 4 4
// @expects 0.5 1 1.5 2 | 10 11 12 13
#include <metal_stdlib>
using namespace metal;

struct Spin { half angle; char turns; };
struct Particle { float2 position; packed_float3 color; Spin spin[2]; uint id; };
Particle moved(Particle p, float by) { p.position.x += by; p.spin[1].turns += 1; return p; }
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Particle* particles [[buffer(2)]], uint i [[thread_position_in_grid]]) {
    particles[i].position = float2(0.5 * float(i), 0.0);
    particles[i].spin[1] = {half(i), char(8 + i)};
    Particle q = particles[i];
    q = moved(q, 0.5);
    q.color = packed_float3(in[1], in[2], in[3]);
    particles[i] = q;
    device Particle& p = particles[i];
    out[i] = p.position.x;
    out[4 + i] = float(p.spin[1].turns) + p.color.y - 1.0;
}
