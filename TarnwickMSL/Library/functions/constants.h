// Constants (Metal Shading Language 3.1, 6.6 and 2.1).
#pragma once

#define MAXFLOAT 3.402823466e+38f
#define HUGE_VALF __builtin_huge_valf()
#define INFINITY __builtin_inff()
#define NAN __builtin_nanf("")
#define MAXHALF ((half)65504.0f)
#define HUGE_VALH ((half)__builtin_inff())

#define M_E_F 2.71828182845904523536f
#define M_LOG2E_F 1.44269504088896340736f
#define M_LOG10E_F 0.43429448190325182765f
#define M_LN2_F 0.69314718055994530942f
#define M_LN10_F 2.30258509299404568402f
#define M_PI_F 3.14159265358979323846f
#define M_PI_2_F 1.57079632679489661923f
#define M_PI_4_F 0.78539816339744830962f
#define M_1_PI_F 0.31830988618379067154f
#define M_2_PI_F 0.63661977236758134308f
#define M_2_SQRTPI_F 1.12837916709551257390f
#define M_SQRT2_F 1.41421356237309504880f
#define M_SQRT1_2_F 0.70710678118654752440f

#define M_E_H ((half)M_E_F)
#define M_LOG2E_H ((half)M_LOG2E_F)
#define M_LOG10E_H ((half)M_LOG10E_F)
#define M_LN2_H ((half)M_LN2_F)
#define M_LN10_H ((half)M_LN10_F)
#define M_PI_H ((half)M_PI_F)
#define M_PI_2_H ((half)M_PI_2_F)
#define M_PI_4_H ((half)M_PI_4_F)
#define M_1_PI_H ((half)M_1_PI_F)
#define M_2_PI_H ((half)M_2_PI_F)
#define M_2_SQRTPI_H ((half)M_2_SQRTPI_F)
#define M_SQRT2_H ((half)M_SQRT2_F)
#define M_SQRT1_2_H ((half)M_SQRT1_2_F)

#define FLT_DIG 6
#define FLT_MANT_DIG 24
#define FLT_MAX_10_EXP (+38)
#define FLT_MAX_EXP (+128)
#define FLT_MIN_10_EXP (-37)
#define FLT_MIN_EXP (-125)
#define FLT_RADIX 2
#define FLT_MAX 0x1.fffffep127f
#define FLT_MIN 0x1.0p-126f
#define FLT_EPSILON 0x1.0p-23f
#define FP_ILOGB0 (-2147483647 - 1)
#define FP_ILOGBNAN (-2147483647 - 1)

#define HALF_DIG 3
#define HALF_MANT_DIG 11
#define HALF_MAX_10_EXP (+4)
#define HALF_MAX_EXP (+16)
#define HALF_MIN_10_EXP (-4)
#define HALF_MIN_EXP (-13)
#define HALF_RADIX 2
#define HALF_MAX ((half)0x1.ffcp15f)
#define HALF_MIN ((half)0x1.0p-14f)
#define HALF_EPSILON ((half)0x1.0p-10f)

#define BFLT_DIG 2
#define BFLT_MANT_DIG 8
#define BFLT_MAX_10_EXP (+38)
#define BFLT_MAX_EXP (+128)
#define BFLT_MIN_10_EXP (-37)
#define BFLT_MIN_EXP (-125)
#define BFLT_RADIX 2
#define BFLT_MAX ((bfloat)0x1.fep127f)
#define BFLT_MIN ((bfloat)0x1.0p-126f)
#define BFLT_EPSILON ((bfloat)0x1.0p-7f)

#define CHAR_BIT 8
#define SCHAR_MAX 127
#define SCHAR_MIN (-128)
#define CHAR_MAX SCHAR_MAX
#define CHAR_MIN SCHAR_MIN
#define UCHAR_MAX 255
#define SHRT_MAX 32767
#define SHRT_MIN (-32768)
#define USHRT_MAX 65535
#define INT_MAX 2147483647
#define INT_MIN (-2147483647 - 1)
#define UINT_MAX 4294967295u
#define LONG_MAX 9223372036854775807l
#define LONG_MIN (-9223372036854775807l - 1)
#define ULONG_MAX 18446744073709551615ul
