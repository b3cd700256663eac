// Long lists of records at changing indices: each member, parts of members, whole records, and one of
// two elements of a member.
// @expects 24 7 103 39 5 212 12 9 31 8
#include <metal_stdlib>
using namespace metal;

struct Inner { float3 place; ushort pair[2]; };
struct Row { float3 first; half3 steps[3]; Inner inner; float4x4 turn; packed_float2 last; char mark; };

static Row row(int i) {
    Row made = {};
    made.first = float3(i, i + 1, i + 2);
    for (int k = 0; k < 3; k++)
        made.steps[k] = half3(i * 10 + k, 100 + i, 200 + k);
    made.inner = {float3(i * 3), {ushort(i), ushort(i + 5)}};
    made.turn[2] = float4(i * 2);
    made.last = packed_float2(i + 4, i + 6);
    made.mark = char(i);
    return made;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int one = int(in[1]), two = int(in[2]), three = int(in[3]);
    Row a = row(one), b = row(two), c = row(three);
    Row list[12] = {a, b, c};
    for (int i = 3; i < 12; i++)
        list[i].last.y = float(i);
    list[three * 3].steps[one].y = 5.0h;
    list[three + two].turn[two].w += 9.0f;
    out[0] = list[one].steps[three > two ? 1 : 2].x + list[0].inner.place.y;
    out[1] = list[two].last.x;
    out[2] = list[two].steps[three > two ? 2 : 0].y;
    out[3] = list[three * two].last.y + 33.0f;
    out[4] = list[three * 3].steps[one].y;
    out[5] = list[one].steps[two].z + 10.0f;
    Row copied = list[two];
    copied.inner.pair[one] += 4;
    list[three * 2 + one] = copied;
    out[6] = list[three * 2 + one].inner.pair[one];
    out[7] = list[three + two].turn[two].w;
    out[8] = list[one].inner.place.z + list[three * 2].mark + 25.0f;
    out[9] = list[two * 4].last.y;
}
