// Packed vectors as members in device memory stand one element apart.
// @expects 20 4 | 1 2 3 4 | 6 14
#include <metal_stdlib>
using namespace metal;

struct Vertex { packed_float3 at; packed_half2 uv; packed_uchar4 color; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Vertex* v [[buffer(2)]]) {
    out[0] = float(sizeof(Vertex)); out[1] = float(alignof(Vertex));
    v[1].at = packed_float3(in[1], in[2], in[3]);
    v[1].color = packed_uchar4(4, 5, 6, 7);
    device float* raw = (device float*)(v + 1);
    for (int i = 0; i < 3; i++) out[2 + i] = raw[i];
    out[5] = float(((device uchar*)(v + 1))[16]);
    out[6] = float(v[1].color[2]);
    v[1].at.z += 5.0; v[1].at *= 1.0;
    float3 sum = v[1].at + float3(1.0);
    out[7] = sum.x + sum.y + sum.z;
}
