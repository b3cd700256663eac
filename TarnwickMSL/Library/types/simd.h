// <simd/simd.h>: the names of types in headers that programs share with their host. Included by
// programs only, so that the front end reads the names as aliases of the program.
#pragma once

#define MSL_SIMD_VECTORS(T)                                                                        \
    typedef T##2 vector_##T##2;                                                                    \
    typedef T##3 vector_##T##3;                                                                    \
    typedef T##4 vector_##T##4;                                                                    \
    typedef T##2 simd_##T##2;                                                                      \
    typedef T##3 simd_##T##3;                                                                      \
    typedef T##4 simd_##T##4;
MSL_SIMD_VECTORS(char)
MSL_SIMD_VECTORS(uchar)
MSL_SIMD_VECTORS(short)
MSL_SIMD_VECTORS(ushort)
MSL_SIMD_VECTORS(int)
MSL_SIMD_VECTORS(uint)
MSL_SIMD_VECTORS(half)
MSL_SIMD_VECTORS(float)
#undef MSL_SIMD_VECTORS

#define MSL_SIMD_MATRIX(shape)                                                                     \
    typedef metal::float##shape matrix_float##shape;                                               \
    typedef metal::float##shape simd_float##shape;                                                 \
    typedef metal::half##shape matrix_half##shape;                                                 \
    typedef metal::half##shape simd_half##shape;
MSL_SIMD_MATRIX(2x2) MSL_SIMD_MATRIX(2x3) MSL_SIMD_MATRIX(2x4)
MSL_SIMD_MATRIX(3x2) MSL_SIMD_MATRIX(3x3) MSL_SIMD_MATRIX(3x4)
MSL_SIMD_MATRIX(4x2) MSL_SIMD_MATRIX(4x3) MSL_SIMD_MATRIX(4x4)
#undef MSL_SIMD_MATRIX

namespace simd {
using namespace metal;
}
