// Elements of local records at indices that LLVM turns into choices of offsets.
// @expects 7 | 3 | 5 | 7 | 3 | 9
#include <metal_stdlib>
using namespace metal;

struct Item {
    uint first;
    int2 place;
    uint weight;
    uint last;
};

struct Frame {
    float2x4 outer;
    uint number;
    float2x3 inner;
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    uint one = uint(in[1]), h = one * 7u, index = one == 0u ? 1u : 2u;
    Item item = {h, int2(3), 2u, h};
    Item list[3] = {item, item, item};
    for (uint i = 0u; i < 2u; i++) {
        for (uint j = 0u; j < 2u; j++)
            if ((i & j & 1u) != 0u) item.last -= list[item.first & 1u].weight;
        list[index].last = item.last;
    }
    out[0] = float(list[1].last), out[1] = float(list[0].place.x), out[2] = float(list[2].last);
    Frame frame = {float2x4(3.0f * in[1]), one, float2x3(float3(7.0f), float3(9.0f))};
    frame.inner[0].y = 7.0f * in[1];
    out[3] = frame.inner[one - 1u].y, out[4] = frame.outer[one - 1u].x;
    out[5] = frame.inner[h & 1u].z;
}
