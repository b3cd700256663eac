// The macros that make the overloads of list.h and of the other files.
#pragma once

// M(T, I, B): a floating type, the integers of its width, and the type of its comparisons.
#define MSL_EACH_FLOAT(M)                                                                          \
    M(float, int, bool) M(float2, int2, bool2) M(float3, int3, bool3) M(float4, int4, bool4)
#define MSL_EACH_HALF(M)                                                                           \
    M(half, short, bool) M(half2, short2, bool2) M(half3, short3, bool3) M(half4, short4, bool4)
#define MSL_EACH_FLOATING(M) MSL_EACH_FLOAT(M) MSL_EACH_HALF(M)

// M(T, U, S, W): an integer type, the unsigned and the signed type of its width, and the width in
// bits.
#define MSL_EACH_LANES(M, T, U, S, W)                                                              \
    M(T##2, U##2, S##2, W) M(T##3, U##3, S##3, W) M(T##4, U##4, S##4, W)
#define MSL_EACH_INTEGER_SCALAR(M)                                                                 \
    M(char, uchar, char, 8) M(uchar, uchar, char, 8)                                               \
    M(short, ushort, short, 16) M(ushort, ushort, short, 16)                                       \
    M(int, uint, int, 32) M(uint, uint, int, 32)                                                   \
    M(long, ulong, long, 64) M(ulong, ulong, long, 64)
#define MSL_EACH_INTEGER_VECTOR(M)                                                                 \
    MSL_EACH_LANES(M, char, uchar, char, 8) MSL_EACH_LANES(M, uchar, uchar, char, 8)               \
    MSL_EACH_LANES(M, short, ushort, short, 16) MSL_EACH_LANES(M, ushort, ushort, short, 16)       \
    MSL_EACH_LANES(M, int, uint, int, 32) MSL_EACH_LANES(M, uint, uint, int, 32)                   \
    MSL_EACH_LANES(M, long, ulong, long, 64) MSL_EACH_LANES(M, ulong, ulong, long, 64)
#define MSL_EACH_INTEGER(M) MSL_EACH_INTEGER_SCALAR(M) MSL_EACH_INTEGER_VECTOR(M)

// The column `arguments` of list.h: the parameters, and the arguments of a call with them.
#define MSL_TAKES_1(T) T x
#define MSL_TAKES_2(T) T x, T y
#define MSL_TAKES_3(T) T x, T y, T z
#define MSL_TAKES_out(T) T x, T& out
#define MSL_TAKES_field(T) T x, uint offset, uint count
#define MSL_TAKES_two_fields(T) T x, T y, uint offset, uint count
#define MSL_GIVES_1 x
#define MSL_GIVES_2 x, y
#define MSL_GIVES_out x, out

// One overload with its body.
#define MSL_DEFINE(R, T, name, arguments, ...)                                                     \
    MSL_INLINE R name(MSL_TAKES_##arguments(T)) { __VA_ARGS__ }

// The columns `precise` and `half` of list.h: `core` has the row defined by `define`.
#define MSL_IF_core(define, name, arguments) define(name, arguments)
#define MSL_IF_own(define, name, arguments)

// The overloads for vectors of a function of scalars, lane by lane. R, T and A are the elements of
// the result, of the arguments and of the second argument.
#define MSL_LANES(R, T, A, name, arguments) MSL_LANES_##arguments(R, T, A, name)
#define MSL_LANES_1(R, T, A, name)                                                                 \
    MSL_INLINE R##2 name(T##2 x) { return {name(x.x), name(x.y)}; }                                \
    MSL_INLINE R##3 name(T##3 x) { return {name(x.x), name(x.y), name(x.z)}; }                     \
    MSL_INLINE R##4 name(T##4 x) { return {name(x.x), name(x.y), name(x.z), name(x.w)}; }
#define MSL_LANES_2(R, T, A, name)                                                                 \
    MSL_INLINE R##2 name(T##2 x, A##2 y) { return {name(x.x, y.x), name(x.y, y.y)}; }              \
    MSL_INLINE R##3 name(T##3 x, A##3 y) {                                                         \
        return {name(x.x, y.x), name(x.y, y.y), name(x.z, y.z)};                                   \
    }                                                                                              \
    MSL_INLINE R##4 name(T##4 x, A##4 y) {                                                         \
        return {name(x.x, y.x), name(x.y, y.y), name(x.z, y.z), name(x.w, y.w)};                   \
    }
#define MSL_LANES_3(R, T, A, name)                                                                 \
    MSL_INLINE R##2 name(T##2 x, T##2 y, T##2 z) {                                                 \
        return {name(x.x, y.x, z.x), name(x.y, y.y, z.y)};                                         \
    }                                                                                              \
    MSL_INLINE R##3 name(T##3 x, T##3 y, T##3 z) {                                                 \
        return {name(x.x, y.x, z.x), name(x.y, y.y, z.y), name(x.z, y.z, z.z)};                    \
    }                                                                                              \
    MSL_INLINE R##4 name(T##4 x, T##4 y, T##4 z) {                                                 \
        return {name(x.x, y.x, z.x), name(x.y, y.y, z.y), name(x.z, y.z, z.z),                     \
                name(x.w, y.w, z.w)};                                                              \
    }
// A second result through a reference.
#define MSL_LANES_out(R, T, A, name)                                                              \
    MSL_INLINE T##2 name(T##2 x, A##2& out) {                                                      \
        A a, b;                                                                                    \
        T##2 result = {name(x.x, a), name(x.y, b)};                                                \
        out = A##2{a, b};                                                                          \
        return result;                                                                             \
    }                                                                                              \
    MSL_INLINE T##3 name(T##3 x, A##3& out) {                                                      \
        A a, b, c;                                                                                 \
        T##3 result = {name(x.x, a), name(x.y, b), name(x.z, c)};                                  \
        out = A##3{a, b, c};                                                                       \
        return result;                                                                             \
    }                                                                                              \
    MSL_INLINE T##4 name(T##4 x, A##4& out) {                                                      \
        A a, b, c, d;                                                                              \
        T##4 result = {name(x.x, a), name(x.y, b), name(x.z, c), name(x.w, d)};                    \
        out = A##4{a, b, c, d};                                                                    \
        return result;                                                                             \
    }

namespace metal {

// Conversions between half and float, of scalars and vectors.
MSL_INLINE float _wide(half x) { return x; }
MSL_INLINE float2 _wide(half2 x) { return __builtin_convertvector(x, float2); }
MSL_INLINE float3 _wide(half3 x) { return __builtin_convertvector(x, float3); }
MSL_INLINE float4 _wide(half4 x) { return __builtin_convertvector(x, float4); }
MSL_INLINE half _narrow(float x) { return static_cast<half>(x); }
MSL_INLINE half2 _narrow(float2 x) { return __builtin_convertvector(x, half2); }
MSL_INLINE half3 _narrow(float3 x) { return __builtin_convertvector(x, half3); }
MSL_INLINE half4 _narrow(float4 x) { return __builtin_convertvector(x, half4); }

} // namespace metal
