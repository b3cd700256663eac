// Pixel types in records, device memory and as values: sizes, rounding, limits, arithmetic (2.7).
// @runs check
// @expects 1 2 4 4 8 4 4 4 20 | 255 128 0 64 | -1 1 0.5039370 | 1 0.5 0 | 128 188 0 64 | 1023 0 512 3
// @expects 1 0.25 0.3359375 | 65024 0 64512 | 0.5 3 65408 0 0 | 0.75 0.5 0.25 1 | 0.6 | 7 9
// @expects 65535 32768
// @within 1e-6
#include <metal_stdlib>
using namespace metal;

struct Stored {
    rgba8unorm<half4> colour;
    rg8snorm<float2> slope;
    r16unorm<float> depth;
    rgb10a2<half4> normal;
    rg11b10f<half3> light;
    rgb9e5<float3> sky;
};

kernel void check(device float* out [[buffer(0)]], device Stored* kept [[buffer(2)]],
                  constant float* in [[buffer(1)]]) {
    out[0] = sizeof(r8unorm<half>);
    out[1] = sizeof(r16snorm<float>);
    out[2] = sizeof(rgba8unorm<half4>);
    out[3] = sizeof(srgba8unorm<half4>);
    out[4] = sizeof(rgba16unorm<float4>);
    out[5] = sizeof(rgb10a2<half4>);
    out[6] = sizeof(rg11b10f<half3>);
    out[7] = sizeof(rgb9e5<half3>);
    out[8] = sizeof(Stored);

    kept->colour = half4(half(in[2]), 0.5h, -1, 0.25h);
    device const uchar* bytes = (device const uchar*)kept;
    for (int lane = 0; lane < 4; lane++)
        out[9 + lane] = float(bytes[lane]);
    kept->slope = float2(-in[3], in[3]);
    float2 slope = kept->slope;
    out[13] = slope.x;
    out[14] = slope.y;
    rg8snorm<float2> half_way = float2(0.5);
    out[15] = float2(half_way).y;
    kept->depth = 1.0f;
    out[16] = kept->depth;
    r8unorm<half> plain = half(0.5);
    out[17] = round(float(half(plain)) * 100) / 100;
    r8snorm<half> none = half(0);
    out[18] = float(half(none));
    srgba8unorm<float4> shown = float4(0.2158605f, 0.5f, 0, 0.25f);
    thread const uchar* codes = (thread const uchar*)&shown;
    for (int lane = 0; lane < 4; lane++)
        out[19 + lane] = float(codes[lane]);

    kept->normal = half4(1, 0, 0.5h, 1);
    uint word = *(device const uint*)&kept->normal;
    out[23] = float(word & 1023);
    out[24] = float(word >> 10 & 1023);
    out[25] = float(word >> 20 & 1023);
    out[26] = float(word >> 30);

    kept->light = half3(1, 0.25h, half(1 / in[3]));
    half3 light = kept->light;
    out[27] = float(light.x);
    out[28] = float(light.y);
    out[29] = float(light.z);
    rg11b10f<float3> most = float3(1e30f, -1, 1e30f);
    out[30] = float3(most).x;
    out[31] = float3(most).y;
    out[32] = float3(most).z;

    kept->sky = float3(0.5f, in[3], 0);
    float3 sky = kept->sky;
    out[33] = sky.x;
    out[34] = sky.y;
    rgb9e5<float3> limits = float3(1e9f, -4, 0.001f);
    out[35] = float3(limits).x;
    out[36] = float3(limits).y;
    out[37] = float3(limits).z;

    rgba8unorm<float4> a = float4(0.2f, 0.4f, 0.6f, 1), b = a;
    float4 sum = a * 0.5f + b / 2 + float4(0.55f, 0.1f, -0.35f, 0);
    for (int lane = 0; lane < 4; lane++)
        out[38 + lane] = round(sum[lane] * 100) / 100;
    a += float4(0.6f, 0, 0, 0) - 0.2f;
    out[42] = float4(a).x;
    rgba16unorm<float4> wide[2];
    wide[1] = float4(7, 9, 0, 0) / 65535;
    float4 counts = float4(wide[1]) * 65535;
    out[43] = round(counts.x);
    out[44] = round(counts.y);
    rg16unorm<float2> edge = float2(2, 0.5f);
    thread const ushort* edges = (thread const ushort*)&edge;
    out[45] = float(edges[0]);
    out[46] = float(edges[1]);
}
