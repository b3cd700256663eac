// Matrices of SIMD-groups (Metal Shading Language 3.1, 2.4 and 6.7), of 8 x 8 values. Each lane has
// the row of its index modulo 8, in float, so that a SIMD-group must have 8 lanes at least; products take
// the rows of the second matrix by shuffles.
#pragma once

#include "bfloats.h"
#include "simdgroups.h"

namespace metal {

template <class T> struct _simd_row { // half of a row
    static MSL_INLINE float4 rounded(float4 x) { return __builtin_convertvector(__builtin_convertvector(x, vec<T, 4>), float4); }
};
template <> struct _simd_row<float> {
    static MSL_INLINE float4 rounded(float4 x) { return x; }
};
template <> struct _simd_row<bfloat> {
    static MSL_INLINE float4 rounded(float4 x) { return bfloat4(x).unpacked(); }
};

template <class T, int Columns, int Rows> struct simdgroup_matrix {
    static_assert(Columns == 8 && Rows == 8, "a matrix of a SIMD-group has 8 columns and 8 rows");
    static_assert(is_same_v<T, float> || is_same_v<T, half> || is_same_v<T, bfloat>,
                  "the element of a matrix of a SIMD-group is float, half or bfloat");
    float4 left, right;

    simdgroup_matrix() = default;
    // A diagonal matrix.
    MSL_CONVERGENT explicit simdgroup_matrix(T value) {
        const uint row = _simd_matrix_lane() % 8;
        const float v = static_cast<float>(value);
        left = float4{row == 0 ? v : 0, row == 1 ? v : 0, row == 2 ? v : 0, row == 3 ? v : 0};
        right = float4{row == 4 ? v : 0, row == 5 ? v : 0, row == 6 ? v : 0, row == 7 ? v : 0};
    }
    MSL_INLINE simdgroup_matrix(float4 a, float4 b)
        : left(_simd_row<T>::rounded(a)), right(_simd_row<T>::rounded(b)) {}
};
typedef simdgroup_matrix<float, 8, 8> simdgroup_float8x8;
typedef simdgroup_matrix<half, 8, 8> simdgroup_half8x8;
typedef simdgroup_matrix<bfloat, 8, 8> simdgroup_bfloat8x8;

/** A matrix with the same value everywhere. */
template <class T, int Columns, int Rows = Columns>
MSL_INLINE simdgroup_matrix<T, Columns, Rows> make_filled_simdgroup_matrix(T value) {
    return {float4(static_cast<float>(value)), float4(static_cast<float>(value))};
}
/** A matrix with the value on its diagonal and 0 elsewhere. */
template <class T, int Columns, int Rows = Columns>
MSL_CONVERGENT simdgroup_matrix<T, Columns, Rows> make_diagonal_simdgroup_matrix(T value) {
    return simdgroup_matrix<T, Columns, Rows>(value);
}

// The elements of this lane's row: the first one, and the distance to the next.
struct _simd_elements {
    uint first, step;
};
MSL_CONVERGENT _simd_elements _simd_elements_of(ulong perRow, ulong2 origin, bool isTransposed) {
    const uint row = _simd_matrix_lane() % 8, width = uint(perRow);
    const uint start = uint(origin.y) * width + uint(origin.x);
    if (isTransposed)
        return {start + row, width};
    return {start + row * width, 1};
}

/** Reads a matrix from memory, by all threads of the group together. */
template <class T>
MSL_CONVERGENT void simdgroup_load(simdgroup_matrix<T, 8, 8>& to, const T* from, ulong elements_per_row = 8,
                               ulong2 matrix_origin = ulong2(0ul), bool transpose_matrix = false) {
    const _simd_elements e = _simd_elements_of(elements_per_row, matrix_origin, transpose_matrix);
    const auto at = [&](uint i) { return static_cast<float>(from[e.first + i * e.step]); };
    to.left = float4{at(0), at(1), at(2), at(3)};
    to.right = float4{at(4), at(5), at(6), at(7)};
}
/** Writes a matrix to memory, by all threads of the group together. */
template <class T>
MSL_CONVERGENT void simdgroup_store(simdgroup_matrix<T, 8, 8> from, T* to, ulong elements_per_row = 8,
                                ulong2 matrix_origin = ulong2(0ul), bool transpose_matrix = false) {
    const _simd_elements e = _simd_elements_of(elements_per_row, matrix_origin, transpose_matrix);
    if (_simd_matrix_lane() >= 8)
        return;
    const auto put = [&](uint i, float value) { to[e.first + i * e.step] = static_cast<T>(value); };
    put(0, from.left.x), put(1, from.left.y), put(2, from.left.z), put(3, from.left.w);
    put(4, from.right.x), put(5, from.right.y), put(6, from.right.z), put(7, from.right.w);
}

// d = a b + c. The types may differ; d is rounded once.
/** d = a * b + c. */
template <class D, class A, class B, class C>
MSL_CONVERGENT void simdgroup_multiply_accumulate(simdgroup_matrix<D, 8, 8>& d, simdgroup_matrix<A, 8, 8> a,
                                              simdgroup_matrix<B, 8, 8> b, simdgroup_matrix<C, 8, 8> c) {
    const uint lane = _simd_matrix_lane(), first = lane - lane % 8;
    float4 left = c.left, right = c.right;
    _Pragma("clang loop unroll(full)") for (uint k = 0; k < 8; ++k) {
        const float factor = k < 4 ? a.left[k] : a.right[k - 4];
        left += factor * _simd_shuffle(b.left, first + k);
        right += factor * _simd_shuffle(b.right, first + k);
    }
    d = {left, right};
}
/** d = a * b. */
template <class D, class A, class B>
MSL_CONVERGENT void simdgroup_multiply(simdgroup_matrix<D, 8, 8>& d, simdgroup_matrix<A, 8, 8> a,
                                   simdgroup_matrix<B, 8, 8> b) {
    simdgroup_multiply_accumulate(d, a, b, make_filled_simdgroup_matrix<D, 8, 8>(D(0)));
}
template <class T>
MSL_CONVERGENT simdgroup_matrix<T, 8, 8> operator*(simdgroup_matrix<T, 8, 8> a, simdgroup_matrix<T, 8, 8> b) {
    simdgroup_matrix<T, 8, 8> product;
    simdgroup_multiply(product, a, b);
    return product;
}

} // namespace metal
