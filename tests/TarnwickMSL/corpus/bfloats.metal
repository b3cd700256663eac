// bfloat: literals, conversions, rounding, arithmetic, comparisons, vectors, swizzles, memory (2.1, 2.2).
// @expects 1.5 256 256 260 -1.5 | 2.25 2.5 0.1669921875 | 4.5 6 3 | 1 1 0 1 | 16320 32 8 6 | 7 5 2 | 3 8 15 | 8 3 3 2 | 1 0 1 | 1 | 4 10 | 1.9921875 8
#include <metal_stdlib>
using namespace metal;

struct Cell {
    bfloat one;
    bfloat2 two;
    bfloat3 three;
    packed_bfloat3 packed;
    bfloat4 four;
};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Cell& cell [[buffer(2)]]) {
    bfloat a = 1.5bf, b = bfloat(256.0f + in[1]), c = in[255] + in[2], d = 259;
    out[0] = a; out[1] = b; out[2] = c; out[3] = d; out[4] = -a;
    out[5] = a * a; out[6] = a + 1.0bf; out[7] = bfloat(1) / bfloat(6);
    a *= 2.0f; a += 1;
    a = a + bfloat(0.5h);
    out[8] = a; out[9] = a * 2.0h - 3 * in[1]; out[10] = int(a) - 1.0BF;
    out[11] = a > 4; out[12] = a == 4.5bf; out[13] = a < in[4]; out[14] = a >= 4.5h;
    out[15] = as_type<ushort>(1.5bf); out[16] = sizeof(Cell); out[17] = sizeof(bfloat3); out[18] = sizeof(packed_bfloat3);

    bfloat3 v(1, 2, 3), w = bfloat3(4.0f, bfloat2(5, 6)) + v;
    out[19] = w.y; out[20] = w[0]; out[21] = v.zyx.y;
    w.xy = w.yx;
    w = (w - v) / bfloat3(2, 1, 1) * v;
    out[22] = float3(w).x; out[23] = (w.y + 2.0bf); out[24] = half(w.z) - 3;
    v.x = 8; v[1] = 3.0bf;
    bfloat4 four = bfloat4(v, 2);
    out[25] = four.r; out[26] = four.g; out[27] = four.b; out[28] = four.w;
    bool3 less = v < bfloat3(9, 3, 4);
    out[29] = less.x; out[30] = less.y; out[31] = less.z;
    vec<bfloat, 2> pair = vec<bfloat, 2>(in[1], in[2]);
    out[32] = all(pair == bfloat2(1, 2));

    cell.one = a; cell.two = pair; cell.three = bfloat3(in[3]); cell.packed = v; cell.four = four;
    cell.packed.y = cell.two.y + cell.three.z;
    thread bfloat list[] = {1.0bf, cell.packed.y, 3};
    list[0] += bfloat(0.5f);
    out[33] = cell.one - 0.5f; out[34] = list[1] * cell.four.w;
    out[35] = numeric_limits<bfloat>::max() / 0x1p127f; out[36] = numeric_limits<bfloat>::digits;
}
