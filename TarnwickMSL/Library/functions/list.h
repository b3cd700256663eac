// The functions of numbers, one row each. A row gives the function's body; its overloads for
// scalars, vectors and halves, its overloads for scalars of several types and its names in
// metal::fast and metal::precise follow from the row. Metal Shading Language 3.1, 6.2 to 6.6.
//
// A row is M(T, name, arguments, mixed, ..., body), where
//   T          is the type of the overload, float or int3 for instance; some rows name another
//              type before it, the type of the result.
//   arguments  is 1, 2 or 3 for the arguments (x), (x, y) or (x, y, z) of type T, or a name of
//              MSL_TAKES_name in overloads.h.
//   mixed      is about calls with scalars of different types, as in max(0, x). `common`: the
//              arguments get the type of an arithmetic expression of them. `floating`: the same,
//              and integers become float. `none`: there are no such overloads.
//   body       is the body of the function. A semicolon ends each statement, the last one too.
//
// A row may use functions of the rows above it. The comment of two asterisks before a row describes
// the function in one sentence for programmers (TarnwickMSL/Declarations).
#pragma once

// Functions of a floating type T that are the same in fast and in precise math (6.4, 6.5).
#define MSL_COMMON_FUNCTIONS(M, T)                                                                 \
    /** The absolute value. */                                                                     \
    M(T, abs, 1, none, return __builtin_elementwise_abs(x);)                                       \
    /** The absolute value. */                                                                     \
    M(T, fabs, 1, floating, return __builtin_elementwise_abs(x);)                                  \
    /** The largest whole number that is not greater than x. */                                    \
    M(T, floor, 1, floating, return __builtin_elementwise_floor(x);)                               \
    /** The smallest whole number that is not less than x. */                                      \
    M(T, ceil, 1, floating, return __builtin_elementwise_ceil(x);)                                 \
    /** x without its fraction: rounded toward 0. */                                               \
    M(T, trunc, 1, floating, return __builtin_elementwise_trunc(x);)                               \
    /** The nearest whole number; halves round to the even one. */                                 \
    M(T, rint, 1, floating, return __builtin_elementwise_roundeven(x);)                            \
    /** The magnitude of x with the sign of y. */                                                  \
    M(T, copysign, 2, floating, return __builtin_elementwise_copysign(x, y);)                      \
    /** The nearest whole number; halves round away from 0. */                                     \
    M(T, round, 1, floating, return trunc(x + copysign(_below_half(x), x));)                       \
    /** The lesser number; a NaN is ignored. */                                                    \
    M(T, fmin, 2, floating, return _number_min(x, y);)                                             \
    /** The greater number; a NaN is ignored. */                                                   \
    M(T, fmax, 2, floating, return _number_max(x, y);)                                             \
    /** The lesser number. */                                                                      \
    M(T, min, 2, common, return __builtin_elementwise_min(x, y);)                                  \
    /** The greater number. */                                                                     \
    M(T, max, 2, common, return __builtin_elementwise_max(x, y);)                                  \
    /** The least of three numbers; a NaN is ignored. */                                           \
    M(T, fmin3, 3, floating, return fmin(x, fmin(y, z));)                                          \
    /** The greatest of three numbers; a NaN is ignored. */                                        \
    M(T, fmax3, 3, floating, return fmax(x, fmax(y, z));)                                          \
    /** The middle one of three numbers. */                                                        \
    M(T, fmedian3, 3, floating, return max(min(x, y), min(max(x, y), z));)                         \
    /** The least of three numbers. */                                                             \
    M(T, min3, 3, common, return min(x, min(y, z));)                                               \
    /** The greatest of three numbers. */                                                          \
    M(T, max3, 3, common, return max(x, max(y, z));)                                               \
    /** The middle one of three numbers. */                                                        \
    M(T, median3, 3, common, return max(min(x, y), min(max(x, y), z));)                            \
    /** x - y, or 0 if that is negative. */                                                        \
    M(T, fdim, 2, floating, return x <= y ? T(0) : x - y;)                                         \
    /** x limited to the range from y to z. */                                                     \
    M(T, clamp, 3, common, return min(max(x, y), z);)                                              \
    /** x limited to the range from 0 to 1. */                                                     \
    M(T, saturate, 1, floating, return min(max(x, T(0)), T(1));)                                   \
    /** The linear blend of x and y: x where z is 0, y where z is 1. */                            \
    M(T, mix, 3, floating, return x + (y - x) * z;)                                                \
    /** 1 for positive x, -1 for negative x, otherwise 0. */                                       \
    M(T, sign, 1, floating, return x > T(0) ? T(1) : (x < T(0) ? T(-1) : T(0));)                   \
    /** 0 where y is less than the edge x, otherwise 1. */                                         \
    M(T, step, 2, floating, return y < x ? T(0) : T(1);)                                           \
    /** 0 where z is below x, 1 where z is above y, with a smooth transition between. */           \
    M(T, smoothstep, 3, floating, T t = saturate((z - x) / (y - x));                               \
      return t * t * (T(3) - T(2) * t);)

// The same, but lane by lane: common.h has the bodies for float and half. A row is
// M(R, T, A, name, arguments, mixed); R and A are the elements of the result and of the second
// argument.
#define MSL_LANE_FUNCTIONS(M, T)                                                                   \
    /** The fraction of x in [0.5, 1); its exponent of 2 goes to the second argument. */           \
    M(T, T, int, frexp, out, none)                                                                 \
    /** x times 2 to the power of the integer. */                                                  \
    M(T, T, int, ldexp, 2, none)                                                                   \
    /** The exponent of x as an integer. */                                                        \
    M(int, T, T, ilogb, 1, none)                                                                   \
    /** The next number after x in the direction of y. */                                          \
    M(T, T, T, nextafter, 2, none)                                                                 \
    /** x * y + z, rounded once. */                                                                \
    M(T, T, T, fma, 3, floating)

// Functions of float or its vectors T with other bodies in precise math and for half (6.5). I is
// the integer type of as many lanes. A row is M(T, name, arguments, mixed, precise, half, body):
//   precise  `core`: lane by lane _core::name. `own`: precise.h has the body.
//   half     `core`: lane by lane _core::name, rounded to half. `own`: halves.h has the body.
//   body     is the body in fast math: the device's own instruction where it is as exact as fast
//            math requires and as fast as arithmetic (Metal Shading Language 3.1, 8.4).
// powr uses the driver's exponential: its error is small beside that of the logarithm. pow squares
// negative x too, without a branch. fract clamps its result below 1 where the difference rounds up
// to 1, as an integer, since a minimum of floats also tests for NaN.
#define MSL_MATH_FUNCTIONS(M, T, I)                                                                \
    /** x / y. */                                                                                  \
    M(T, divide, 2, floating, own, own, return x / y;)                                             \
    /** The square root. */                                                                        \
    M(T, sqrt, 1, floating, own, own, return __builtin_elementwise_sqrt(x);)                       \
    /** 1 divided by the square root. */                                                           \
    M(T, rsqrt, 1, floating, core, own, return T(1) / __builtin_elementwise_sqrt(x);)              \
    /** The sine of an angle in radians. */                                                        \
    M(T, sin, 1, floating, core, core, return __builtin_elementwise_sin(x);)                       \
    /** The cosine of an angle in radians. */                                                      \
    M(T, cos, 1, floating, core, core, return __builtin_elementwise_cos(x);)                       \
    /** The tangent of an angle in radians. */                                                     \
    M(T, tan, 1, floating, core, core, return sin(x) / cos(x);)                                    \
    /** The sine of an angle in radians; its cosine goes to the second argument. */                \
    M(T, sincos, out, none, core, core, out = cos(x); return sin(x);)                              \
    /** The sine of pi times x. */                                                                 \
    M(T, sinpi, 1, floating, core, core,                                                           \
      return sin((x - T(2) * rint(x * T(0.5f))) * T(M_PI_F));)                                     \
    /** The cosine of pi times x. */                                                               \
    M(T, cospi, 1, floating, core, core,                                                           \
      return cos((x - T(2) * rint(x * T(0.5f))) * T(M_PI_F));)                                     \
    /** The tangent of pi times x. */                                                              \
    M(T, tanpi, 1, floating, core, core, return tan((x - rint(x)) * T(M_PI_F));)                   \
    /** e to the power of x. */                                                                    \
    M(T, exp, 1, floating, core, own, return _fast::exp2(x * T(M_LOG2E_F));)                       \
    /** 2 to the power of x. */                                                                    \
    M(T, exp2, 1, floating, core, own, return _fast::exp2(x);)                                     \
    /** 10 to the power of x. */                                                                   \
    M(T, exp10, 1, floating, core, own, return _fast::exp2(x * T(3.32192809f));)                   \
    /** The natural logarithm. */                                                                  \
    M(T, log, 1, floating, core, core, return _fast::log(x);)                                      \
    /** The logarithm to base 2. */                                                                \
    M(T, log2, 1, floating, core, core, return __builtin_elementwise_log2(x);)                     \
    /** The logarithm to base 10. */                                                               \
    M(T, log10, 1, floating, core, core,                                                           \
      return __builtin_elementwise_log2(x) * T(0.301029996f);)                                     \
    /** x to the power of y, for x of 0 or more. */                                                \
    M(T, powr, 2, floating, core, core, return __builtin_elementwise_exp2(y * log2(x));)           \
    /** x to the power of y. */                                                                    \
    M(T, pow, 2, floating, core, core, T found = powr(x, y);                                       \
      return y == T(2) ? x * x : found;)                                                           \
    /** The hyperbolic sine. */                                                                    \
    M(T, sinh, 1, floating, core, core, T e = exp(abs(x));                                         \
      return copysign(T(0.5f) * (e - T(1) / e), x);)                                               \
    /** The hyperbolic cosine. */                                                                  \
    M(T, cosh, 1, floating, core, core, T e = exp(abs(x));                                         \
      return T(0.5f) * (e + T(1) / e);)                                                            \
    /** The hyperbolic tangent. */                                                                 \
    M(T, tanh, 1, floating, core, core, return T(1) - T(2) / (exp(T(2) * x) + T(1));)              \
    /** The inverse hyperbolic sine. */                                                            \
    M(T, asinh, 1, floating, core, core, T size = abs(x);                                          \
      return copysign(log(size + sqrt(size * size + T(1))), x);)                                   \
    /** The inverse hyperbolic cosine. */                                                          \
    M(T, acosh, 1, floating, core, core, return log(x + sqrt(x * x - T(1)));)                      \
    /** The inverse hyperbolic tangent. */                                                         \
    M(T, atanh, 1, floating, core, core, return T(0.5f) * log((T(1) + x) / (T(1) - x));)           \
    /** The remainder of x / y with the sign of x. */                                              \
    M(T, fmod, 2, floating, core, core, return x - y * trunc(x / y);)                              \
    /** The fraction of x; its whole part goes to the second argument. */                          \
    M(T, modf, out, none, core, core, out = trunc(x); return x - out;)                             \
    /** The fraction of x: x - floor(x). */                                                        \
    M(T, fract, 1, floating, core, own, I found = __builtin_bit_cast(I, x - floor(x));             \
      return __builtin_bit_cast(T, __builtin_elementwise_min(found, I(0x3f7fffff)));)

// The same, with _core::name in fast math too: the instructions of drivers have larger errors than
// fast math allows. A row is M(name, arguments, mixed).
#define MSL_CORE_FUNCTIONS(M)                                                                      \
    /** The angle in radians whose sine is x. */                                                   \
    M(asin, 1, floating)                                                                           \
    /** The angle in radians whose cosine is x. */                                                 \
    M(acos, 1, floating)                                                                           \
    /** The angle in radians whose tangent is x. */                                                \
    M(atan, 1, floating)                                                                           \
    /** The angle in radians of the point with the coordinates y and x: the first argument is the  \
        vertical one. */                                                                           \
    M(atan2, 2, floating)

// Functions of vectors T of floats or halves; E is their element (6.6). The same in fast and in
// precise math. geometric.h has the bodies of dot, cross and refract.
#define MSL_GEOMETRIC_FUNCTIONS(M, T, E)                                                           \
    /** The square of the length of a vector. */                                                   \
    M(E, T, length_squared, 1, return dot(x, x);)                                                  \
    /** The length of a vector. */                                                                 \
    M(E, T, length, 1, return sqrt(dot(x, x));)                                                    \
    /** The square of the distance between two points. */                                          \
    M(E, T, distance_squared, 2, return length_squared(x - y);)                                    \
    /** The distance between two points. */                                                        \
    M(E, T, distance, 2, return length(x - y);)                                                    \
    /** The vector of length 1 in the direction of x. */                                           \
    M(T, T, normalize, 1, return x * rsqrt(dot(x, x));)                                            \
    /** x if y and z point against each other, otherwise -x. */                                    \
    M(T, T, faceforward, 3, return dot(z, y) < E(0) ? x : -x;)                                     \
    /** The direction x reflected at a surface with the normal y. */                               \
    M(T, T, reflect, 2, return x - E(2) * dot(y, x) * y;)

// Relations of a floating type T; B is bool or the vector of bool of as many lanes (6.2).
// isnormal compares bits, since a device may compare denormals as zeros.
#define MSL_RELATIONAL_FUNCTIONS(M, T, I, B)                                                       \
    /** Whether x is not a number. */                                                              \
    M(B, T, isnan, 1, return x != x;)                                                              \
    /** Whether x is infinite. */                                                                  \
    M(B, T, isinf, 1, return abs(x) == T(INFINITY);)                                               \
    /** Whether x is neither infinite nor NaN. */                                                  \
    M(B, T, isfinite, 1, return abs(x) < T(INFINITY);)                                             \
    /** Whether x is finite, not 0 and not denormal. */                                            \
    M(B, T, isnormal, 1, I infinite = __builtin_bit_cast(I, T(INFINITY));                          \
      I exponent = __builtin_bit_cast(I, x) & infinite;                                            \
      return (exponent != I(0)) & (exponent != infinite);)                                         \
    /** Whether neither argument is NaN. */                                                        \
    M(B, T, isordered, 2, return (x == x) & (y == y);)                                             \
    /** Whether an argument is NaN. */                                                             \
    M(B, T, isunordered, 2, return (x != x) | (y != y);)                                           \
    /** Whether x has a minus sign. */                                                             \
    M(B, T, signbit, 1, return __builtin_bit_cast(I, x) < I(0);)

// Integers (6.3). T is the integer type, U the unsigned type of its width and lanes, W its width in
// bits. The bodies for scalars are constant expressions where Metal's are; vectors have other
// bodies.
#define MSL_INTEGER_SCALAR_FUNCTIONS(M, T, U, W)                                                   \
    M(constexpr T, T, min, 2, return y < x ? y : x;)                                               \
    M(constexpr T, T, max, 2, return x < y ? y : x;)                                               \
    M(constexpr T, T, clamp, 3, return min(max(x, y), z);)                                         \
    M(constexpr T, T, abs, 1, return x < T(0) ? static_cast<T>(U(0) - U(x)) : x;)                  \
    /** The absolute difference, without overflow. */                                              \
    M(constexpr U, T, absdiff, 2, return static_cast<U>(x < y ? U(y) - U(x) : U(x) - U(y));)       \
    /** The bits of x rotated to the left by y. */                                                 \
    M(T, T, rotate, 2, U bits = static_cast<U>(x);                                                 \
      U left = static_cast<U>(static_cast<U>(y) & (W - 1));                                        \
      U right = static_cast<U>((W - left) & (W - 1));                                              \
      return static_cast<T>(static_cast<U>(bits << left) | static_cast<U>(bits >> right));)        \
    /** x + y limited to the range of the type. */                                                 \
    M(T, T, addsat, 2, return __builtin_elementwise_add_sat(vec<T, 2>(x), vec<T, 2>(y)).x;)        \
    /** x - y limited to the range of the type. */                                                 \
    M(T, T, subsat, 2, return __builtin_elementwise_sub_sat(vec<T, 2>(x), vec<T, 2>(y)).x;)        \
    /** The bits of x in reverse order. */                                                         \
    M(T, T, reverse_bits, 1, return __builtin_elementwise_bitreverse(vec<T, 2>(x)).x;)             \
    /** count bits of x from the bit offset on. */                                                 \
    M(T, T, extract_bits, field, uint up = (W - offset - count) & (W - 1);                         \
      uint down = (W - count) & (W - 1);                                                           \
      T found = static_cast<T>(static_cast<T>(x << up) >> down);                                   \
      return count == 0u ? T(0) : found;)                                                          \
    /** x with count bits of y from the bit offset on. */                                          \
    M(T, T, insert_bits, two_fields,                                                               \
      U ones = static_cast<U>(static_cast<U>(~U(0)) >> ((W - count) & (W - 1)));                   \
      U mask = count == 0u ? U(0) : static_cast<U>(ones << (offset & (W - 1)));                    \
      U moved = static_cast<U>(static_cast<U>(y) << (offset & (W - 1)));                           \
      return static_cast<T>((static_cast<U>(x) & ~mask) | (moved & mask));)
#define MSL_INTEGER_VECTOR_FUNCTIONS(M, T, U, W)                                                   \
    M(T, T, min, 2, return __builtin_elementwise_min(x, y);)                                       \
    M(T, T, max, 2, return __builtin_elementwise_max(x, y);)                                       \
    M(T, T, clamp, 3, return min(max(x, y), z);)                                                   \
    M(T, T, abs, 1, return _magnitude(x);)                                                         \
    M(U, T, absdiff, 2,                                                                            \
      return __builtin_bit_cast(U, max(x, y)) - __builtin_bit_cast(U, min(x, y));)                 \
    M(T, T, rotate, 2, U bits = __builtin_bit_cast(U, x);                                          \
      U left = __builtin_bit_cast(U, y) & U(W - 1);                                                \
      U right = (U(W) - left) & U(W - 1);                                                          \
      return __builtin_bit_cast(T, (bits << left) | (bits >> right));)                             \
    M(T, T, addsat, 2, return __builtin_elementwise_add_sat(x, y);)                                \
    M(T, T, subsat, 2, return __builtin_elementwise_sub_sat(x, y);)                                \
    M(T, T, reverse_bits, 1, return __builtin_elementwise_bitreverse(x);)                          \
    M(T, T, extract_bits, field, decltype(x.x + 0) up = (W - offset - count) & (W - 1);            \
      decltype(x.x + 0) down = (W - count) & (W - 1);                                              \
      T found = (x << T(up)) >> T(down);                                                           \
      return count == 0u ? T(0) : found;)                                                          \
    M(T, T, insert_bits, two_fields,                                                               \
      auto mask = insert_bits(decltype(+x.x + 0ul)(0), ~decltype(+x.x + 0ul)(0), offset, count);   \
      T ones = T(static_cast<decltype(x.x + 0)>(mask));                                            \
      return (x & ~ones) | ((y << T(offset & (W - 1))) & ones);)

// Scalars and vectors alike, after the functions above. hadd and rhadd avoid the sum: the common
// bits plus half of the others.
#define MSL_INTEGER_FUNCTIONS(M, T)                                                                \
    /** (x + y) / 2 rounded down, without overflow. */                                             \
    M(constexpr T, T, hadd, 2, return static_cast<T>((x & y) + ((x ^ y) >> 1));)                   \
    /** (x + y) / 2 rounded up, without overflow. */                                               \
    M(constexpr T, T, rhadd, 2, return static_cast<T>((x | y) - ((x ^ y) >> 1));)                  \
    M(T, T, min3, 3, return min(x, min(y, z));)                                                    \
    M(T, T, max3, 3, return max(x, max(y, z));)                                                    \
    M(T, T, median3, 3, return max(min(x, y), min(max(x, y), z));)

// Integers whose vectors take the scalar's body lane by lane; T is a scalar. integer.h has _mulhi
// and _madsat.
#define MSL_INTEGER_LANE_FUNCTIONS(M, T, U, W)                                                     \
    /** The number of bits that are 1. */                                                          \
    M(T, popcount, 1, return static_cast<T>(__builtin_popcountg(static_cast<U>(x)));)              \
    /** The number of 0 bits above the highest 1. */                                               \
    M(T, clz, 1, return static_cast<T>(__builtin_clzg(static_cast<U>(x), W));)                     \
    /** The number of 0 bits below the lowest 1. */                                                \
    M(T, ctz, 1, return static_cast<T>(__builtin_ctzg(static_cast<U>(x), W));)                     \
    /** The upper half of the product. */                                                          \
    M(T, mulhi, 2, return _mulhi(x, y);)                                                           \
    /** The upper half of x * y, plus z. */                                                        \
    M(T, madhi, 3, return static_cast<T>(_mulhi(x, y) + z);)                                       \
    /** x * y + z limited to the range of the type. */                                             \
    M(T, madsat, 3, return _madsat(x, y, z);)

// Integers of 32 bits and their vectors. Only the low 24 bits of x and y count.
#define MSL_24_BIT_FUNCTIONS(M, T)                                                                 \
    /** The product of the lower 24 bits of x and y. */                                            \
    M(T, T, mul24, 2, return ((x << 8) >> 8) * ((y << 8) >> 8);)                                   \
    /** The product of the lower 24 bits of x and y, plus z. */                                    \
    M(T, T, mad24, 3, return mul24(x, y) + z;)
