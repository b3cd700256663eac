// Swizzles as targets of every assignment operator, of exchange, and lanes by index.
// @expects 9 2 8 4 | 2 1 | 9 4 8 8 | 1 7 3 | 5
#include <metal_stdlib>
using namespace metal;

struct Holder { float3 at; };

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float4 v = float4(in[1], in[2], in[3], in[4]);
    v.xz = float2(9.0, 8.0);
    out[0] = v.x; out[1] = v.y; out[2] = v.z; out[3] = v.w;
    float2 w = float2(in[1], in[2]);
    w.xy = w.yx;
    out[4] = w.x; out[5] = w.y;
    v.yw *= 2.0;
    out[6] = v.x; out[7] = v.y; out[8] = v.z; out[9] = v.w;
    Holder holder = {float3(in[1], in[2], in[3])};
    holder.at[int(in[1])] = in[7];
    out[10] = holder.at.x; out[11] = holder.at.y; out[12] = holder.at.z;
    holder.at.zx += float2(2.0, 1.0);
    out[13] = holder.at.z;
}
