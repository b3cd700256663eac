// Columns and lanes of matrices in records of a local list, at indices known only at run time. The
// records have padding before the matrix and members behind it (4).
// @expects 1 1 0.5 1 | 2 2 0.5 2 | 9 3 0.5 9 | 5 6 | 7
#include <metal_stdlib>
using namespace metal;

struct Frame {
    int first;
    float second;
    float4x3 turn; // eight bytes of padding are before it
    int fourth;
    uint list[3];
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    const uint i = uint(in[1]), j = uint(in[2]);
    Frame made;
    made.first = 1;
    made.second = 2;
    made.turn = float4x3(float3(in[1]), float3(2), float3(3), float3(4));
    made.fourth = 5;
    made.list[0] = made.list[1] = made.list[2] = 6;
    Frame frames[3] = {made, made, made};
    for (uint n = 0; n < 3; n++)
        frames[(i + n) % 3u].turn[(j + n) & 3u].z = 0.5f;
    frames[i + 1].turn[j] = float3(9);
    frames[j].list[i] = 7;
    for (uint n = 0; n < 2; n++) { // frames[1] has column 2, frames[2] column 3, frames[0] column 0
        out[n * 4] = frames[0].turn[n].x;
        out[n * 4 + 1] = frames[1].turn[n].x;
        out[n * 4 + 2] = n == 0 ? frames[0].turn[0].z : frames[1].turn[2].z;
        out[n * 4 + 3] = frames[2].turn[n].z;
    }
    out[8] = frames[2].turn[2].x;
    out[9] = frames[0].turn[2].z;
    out[10] = frames[2].turn[3].z;
    out[11] = frames[2].turn[2].z;
    out[12] = frames[1].fourth;
    out[13] = frames[1].list[1];
    out[14] = frames[2].list[1];
}
