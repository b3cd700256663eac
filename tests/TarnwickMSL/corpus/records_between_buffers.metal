// Records copied from buffer to buffer, and their parts, by indices that only the GPU knows.
// @runs check 4 4
// @runs tell
// @expects 3 4 5 6 | 12 13 | 9 | 22 7
#include <metal_stdlib>
using namespace metal;

struct Bond { uint other; float rest; half2 h; };
struct Body { float2 a; float3 b; Bond bonds[3]; half4 d; char name[5]; };

kernel void check(device Body* list [[buffer(2)]], constant float* in [[buffer(1)]],
                  uint i [[thread_position_in_grid]]) {
    device Body* other = list + 5;
    list[i].a = float2(float(i) + 3.0, 2.0);
    list[i].bonds[2].other = 12 + i;
    list[i].bonds[2].h = half2(7.0h);
    list[i].name[int(in[4])] = char(9 + i);
    other[i] = list[i];
    other[i].bonds[i & 1] = list[i].bonds[int(in[2])];
    Body local[2];
    local[0] = other[i];
    local[1] = list[i];
    local[i & 1].b = float3(22.0);
    other[i] = local[int(in[0])];
}
kernel void tell(device float* out [[buffer(0)]], device Body* list [[buffer(2)]]) {
    for (int i = 0; i < 4; i++) out[i] = list[5 + i].a.x;
    out[4] = float(list[5].bonds[0].other);
    out[5] = float(list[6].bonds[1].other);
    out[6] = float(list[5].name[4]);
    out[7] = list[7].b.y;
    out[8] = float(list[8].bonds[1].h.y);
}
