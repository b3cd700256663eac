// Names of the language's headers in programs: macros in declarations, the types of <simd/simd.h>,
// the parameters of texture types.
// @texture 0 2d float 3x2
// @expects 9 | 1 2 3 | 4 8 12 | 7 | 5 | 16 | 3
#include <metal_stdlib>
#include <simd/simd.h>
using namespace metal;

METAL_FUNC float tripled(float x) { return x * 3; }
template <typename T> METAL_FUNC T chosen(T a, int n) METAL_CONST_ARG(n) { return n == 0 ? a : -a; }

template <typename T, template <typename, access = access::sample, typename = void> class Tex>
uint widthOf(const thread Tex<T>& picture) { return picture.get_width(); }

typedef struct {
    vector_float3 place;
    matrix_float4x4 scale;
    simd_uint2 counts;
    simd::float2 at;
} Shared;

struct METAL_ALIGN(16) Aligned { float value; };

kernel void check(device float* out [[buffer(0)]], texture2d<float> picture [[texture(0)]]) {
    Shared shared;
    shared.place = vector_float3{1, 2, 3};
    shared.scale = simd_float4x4(4);
    shared.counts = simd_uint2(7, 8);
    shared.at = simd::float2(2, 5);
    out[0] = tripled(3);
    for (int i = 0; i < 3; i++) out[1 + i] = shared.place[i];
    const float4 scaled = shared.scale * vector_float4(shared.place, 1);
    for (int i = 0; i < 3; i++) out[4 + i] = scaled[i];
    out[7] = shared.counts.x;
    out[8] = chosen(simd::max(shared.at.x, shared.at.y), 0);
    out[9] = sizeof(Aligned);
    out[10] = widthOf(picture);
}
