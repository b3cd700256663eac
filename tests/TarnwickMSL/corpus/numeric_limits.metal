// numeric_limits and the constants of <metal_limits> (6.1; C++17's names).
// @expects -128 127 | 0 65535 | 1 0 1 | 1 | 65504 | 1 1 | 31 32 24 11 | 2147483648 | 1 | 1 1 1 | 3 9 5 | 1 1 0
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = numeric_limits<char>::min(); out[1] = numeric_limits<char>::max();
    out[2] = numeric_limits<ushort>::lowest(); out[3] = numeric_limits<ushort>::max();
    out[4] = numeric_limits<int>::is_signed; out[5] = numeric_limits<uint>::is_signed;
    out[6] = numeric_limits<int>::is_integer;
    out[7] = numeric_limits<float>::max() == FLT_MAX && numeric_limits<float>::lowest() == -FLT_MAX;
    out[8] = numeric_limits<half>::max();
    out[9] = isinf(numeric_limits<float>::infinity() * in[1]);
    out[10] = isnan(numeric_limits<float>::quiet_NaN() * in[1]);
    out[11] = numeric_limits<int>::digits; out[12] = numeric_limits<uint>::digits;
    out[13] = numeric_limits<float>::digits; out[14] = numeric_limits<half>::digits;
    out[15] = float(INT_MAX) + float(CHAR_BIT) * in[0];
    out[16] = numeric_limits<float>::epsilon() == FLT_EPSILON && numeric_limits<float>::min() == FLT_MIN;
    out[17] = all(numeric_limits<float3>::max() == FLT_MAX) && all(numeric_limits<half2>::epsilon() == HALF_EPSILON);
    out[18] = all(numeric_limits<int4>::lowest() == INT_MIN); out[19] = all(isinf(numeric_limits<float2>::infinity() * in[1]));
    out[20] = numeric_limits<half>::digits10; out[21] = numeric_limits<const float>::max_digits10;
    out[22] = numeric_limits<ushort>::digits10 + numeric_limits<half3>::is_signed;
    out[23] = numeric_limits<float>::round_style; out[24] = numeric_limits<uint>::is_modulo; out[25] = numeric_limits<bfloat>::epsilon() == 1;
}
