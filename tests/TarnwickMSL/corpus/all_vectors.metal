// Vectors and matrices: constructors, swizzles as sources and targets, operators, conversions.
#include <metal_stdlib>
using namespace metal;

struct Packed {
    packed_float3 normal;
    float height;
    packed_uchar4 colour;
    packed_half2 uv;
};

kernel void k(device float4* out [[buffer(0)]], constant Packed* in [[buffer(1)]],
              device Packed& edited [[buffer(2)]], uint i [[thread_position_in_grid]]) {
    float3 n = in[i].normal, m = float3(in[i].normal.yzx);
    edited.normal = n.zyx;
    edited.normal.xz += float2(1, 2);
    edited.normal[1] *= 2;
    edited.uv = half2(n.xy);
    float4 colour = float4(uchar4(in[i].colour)) / 255.0;
    int4 a = int4(1, 2, 3, 4), b = -a.wzyx;
    uint4 u = uint4(a) << 2u;
    u >>= 1;
    u ^= uint4(3);
    a.xz = b.yw;
    a.w++;
    --a;
    a %= 3;
    bool4 c = a < b, d = bool4(true, false, c.xy);
    c = !c || (d && (a == b));
    c.zw = d.xy;
    d.x = any(c) && !all(d);
    float4 picked = select(colour, float4(a), c);
    picked += float4(c) + (c.x ? 1.0 : 2.0);
    if (all(isfinite(picked)) && any(a.xy != b.xy))
        picked.rgb = picked.bgr * picked.aaa;
    float3x3 r = float3x3(1.0), s(n, m, cross(n, m));
    r[1] = n;
    r[2][0] = 4;
    r = transpose(r) * s + 2.0 * r - r / 3;
    r *= s;
    float4x3 wide = float4x3(n, m, n, m);
    float3 v = wide * picked + n * r;
    v *= r;
    float4 back = v * wide;
    float2x2 small = float2x2(float2(1, 2), float2(3, 4));
    half3x3 h = half3x3(r);
    float det = determinant(r) + determinant(small) + float(h[0].x);
    half4 hs = half4(picked) * 0.5h + half(i);
    hs.x = half(n.x > 0.5);
    short4 sh = short4(hs);
    uchar4 bytes = uchar4(colour * 255.0);
    char2 ch = char2(a.xy);
    long2 ls = long2(a.xy) * 4l;
    float3 swapped = as_type<float3>(as_type<uint3>(v) ^ 1u);
    uint packedHalf = as_type<uint>(hs.xy);
    float4 q(v.xy, 1, 2), z{0.5}, y = {1, 2, v.x, 4};
    float3 cast = (float3)i, turned = (float3)(a.xyz);
    float2 e = float2(n.x, a.y), g = {float(i), 2};
    out[i] = picked + back + float4(q.wzyx) + z * y + float4(swapped, float(packedHalf)) +
             float4(sh) + float4(bytes) + float4(e, g) + det + float(ch.x) + float(ls.y) +
             float4(cast, turned.x);
    out[i].yz = v.xy;
    thread float4* at = &q;
    at->x += 1;
    (*at).yz = v.zz;
    out[i] += *at;
}
