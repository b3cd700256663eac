// Pointers to one of several members of a local or threadgroup record, read and written.
// @expects 11 50 30 21 | 12 7 31 | 99 20 21 30 41 | 2.5 3.5 | 12 8 | 5 70 10 | 4 7 3
#include <metal_stdlib>
using namespace metal;

struct Numbers {
    int first;
    int list[4];
    int last;
};
struct Line {
    float4 start;
    float widths[3];
    float4 end;
};

constant Numbers table = {4, {1, 2, 3, 5}, 7};

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    const int zero = int(in[0]), one = int(in[1]);
    Numbers m;
    m.first = 11;
    for (int i = 0; i < 4; i++) m.list[i] = (i + 1) * 10 + zero;
    m.last = 50;
    m.list[(one * 3) & 3] += 1; // 41, so that the list stays in memory
    m.list[(one + zero) & 3] += 1; // 21
    thread int* p = zero ? &m.list[0] : &m.first;
    out[0] = *p;
    p = one ? &m.last : &m.list[0];
    out[1] = *p;
    p = one ? &m.list[2] : &m.last;
    out[2] = *p;
    p = zero ? &m.last : &m.list[1];
    out[3] = *p;
    thread int* written = one ? &m.first : &m.list[3];
    *written += one;
    out[4] = m.first;
    written = zero ? &m.first : &m.last;
    *written = 7;
    out[5] = m.last;
    thread int* next = one ? &m.list[2] : &m.first;
    *next += one;
    out[6] = m.list[2];
    for (int round = 0; round < 3 + zero; round++) {
        thread int* turn = round == 1 ? &m.last : &m.list[0];
        *turn = round == 1 ? 98 + one : *turn + 5;
    }
    out[7] = m.last;
    out[8] = m.list[0];
    out[9] = m.list[one];
    out[10] = m.list[2] - one;
    out[11] = m.list[3];

    Line line;
    line.start = float4(in[2], 0, 0, 0) + 0.5;
    for (int i = 0; i < 3; i++) line.widths[i] = i + in[1];
    line.widths[(one * 2) & 3] += 0.5;
    line.end = float4(in[3]);
    thread float* part = zero ? &line.widths[0] : (thread float*)&line.start;
    out[12] = *part;
    part = zero ? (thread float*)&line.end : &line.widths[2 * one];
    out[13] = *part;

    thread int* kept[2] = {&m.first, &m.list[0]};
    out[14] = *kept[zero];
    *kept[one] = 8;
    out[15] = m.list[0];

    threadgroup Numbers shared;
    for (int i = 0; i < 4; i++) shared.list[i] = i;
    shared.first = 5;
    shared.last = 6;
    threadgroup int* place = zero ? &shared.list[one] : &shared.first;
    out[16] = *place;
    place = one ? &shared.last : &shared.list[one];
    *place = 70;
    out[17] = shared.last;
    out[18] = shared.list[one] + shared.list[zero] + shared.list[one + 2] * 3;

    constant int* fixed = zero ? &table.list[one] : &table.first;
    out[19] = *fixed;
    fixed = one ? &table.last : &table.list[one];
    out[20] = *fixed;
    fixed = one ? &table.list[one + 1] : &table.last;
    out[21] = *fixed;
}
