// Matrices of SIMD-groups: filled, diagonal, loaded and stored with strides, origins and transposed, products (2.4, 6.7).
// @runs check 32 32
// @expects 64*1 | 8 0 0 11 | 16 | 3 192
#include <metal_stdlib>
using namespace metal;

threadgroup float sum(threadgroup float* all);

// The value of row r and column c of a 16 x 16 table of 0, 1, 2, ...
float at(uint r, uint c) { return float(r * 16 + c) / 16.0; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device half* small [[buffer(2)]],
    uint i [[thread_index_in_threadgroup]]) {
    threadgroup float table[256], found[64];
    for (uint n = i; n < 256; n += 32) table[n] = float(n) / 16.0;
    threadgroup_barrier(mem_flags::mem_threadgroup);

    simdgroup_float8x8 a, b, c = make_filled_simdgroup_matrix<float, 8>(0.5f);
    simdgroup_load(a, table, 16, ulong2(3, 2));
    simdgroup_load(b, table, 16, ulong2(1, 5), true);
    simdgroup_multiply_accumulate(c, a, b, c);
    simdgroup_store(c, found);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    for (uint n = i; n < 64; n += 32) {
        float wanted = 0.5;
        for (uint k = 0; k < 8; k++) wanted += at(2 + n / 8, 3 + k) * at(5 + n % 8, 1 + k);
        out[n] = abs(found[n] - wanted) < 1e-3;
    }

    simdgroup_float8x8 d(2.0f), e = make_diagonal_simdgroup_matrix<float, 8, 8>(4.0f), f;
    simdgroup_multiply(f, d, e);
    f = f * simdgroup_float8x8(1.0f);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    simdgroup_store(f, found, 8, ulong2(0), true);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    if (i == 0) { out[64] = found[0]; out[65] = found[1]; out[66] = found[8]; out[67] = found[63] + 3.0; }

    simdgroup_half8x8 g = make_filled_simdgroup_matrix<half, 8, 8>(2.0h), h(1.0h);
    simdgroup_multiply_accumulate(h, g, h, g);
    simdgroup_store(h, small, 10);
    simdgroup_bfloat8x8 x = make_filled_simdgroup_matrix<bfloat, 8, 8>(1.0bf), y(3.0bf);
    simdgroup_float8x8 z;
    simdgroup_multiply(z, x, y);
    threadgroup_barrier(mem_flags::mem_threadgroup);
    simdgroup_store(z, found);
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
    if (i == 0) {
        out[68] = 4.0 * float(small[11]); out[69] = found[63];
        float all = 0;
        for (float value : found) all += value;
        out[70] = all;
    }
}
