// Records and unions of bytes and shorts, copied whole and changed one by one; vectors seen as others.
// @runs check
// @runs tell
// @expects 0 0 5 0 0 0 0 9 | 3 0 7 9 | 3 2 3 2 2 3 44 2 | 2 3 | 7 4 1 | 2.5 3.5
#include <metal_stdlib>
using namespace metal;

struct Bytes { uchar b[8]; };
struct Mixed { ushort s[6]; uchar t[16]; };
union Seen { float4 f; uchar b[16]; ushort s[8]; uint4 u; half4 h[2]; };

kernel void check(device Bytes* list [[buffer(2)]], constant float* in [[buffer(1)]]) {
    int two = int(in[2]);
    device Mixed* mixed = (device Mixed*)(list + 100);
    device Seen* seen = (device Seen*)(list + 200);
    Bytes q = list[two]; q.b[2] = 5; q.b[7] = 9; list[0] = q; list[two + 1] = q;
    Mixed m = mixed[two]; m.s[3] = 7; m.t[9] = m.t[3] + 1; m.t[two] = 4; mixed[1] = m;
    Seen s = seen[two]; s.b[3] = 0x40; s.b[2] = 0x20; s.s[3] = 0x4060; seen[4] = s;
    seen[5].h[1] = seen[4].h[0];
    float4 f = s.f; seen[6].f = f + 0.0;
    Seen v; v.u = uint4(uint(two)); v.b[5] = 3;
    list[4].b[0] = v.b[5]; list[4].b[1] = v.h[1].y > 0.0h ? 1 : 0;
    uchar4 pixels[4];
    for (int j = 0; j < 4; j++) pixels[j] = uchar4(uchar(j));
    pixels[1].w = 9;
    list[4].b[2] = pixels[two].x + 5; list[4].b[3] = uchar(as_type<uint>(pixels[1]) >> 24);
    uint2 pair = uint2(uint(two), uint(two) + 1);
    ushort4 shorts = as_type<ushort4>(pair);
    uchar4 bytes = as_type<uchar4>(shorts.xy);
    ulong both = as_type<ulong>(pair);
    half4 halves = as_type<half4>(uint2(0x01020304));
    list[5].b[0] = uchar(shorts.z); list[5].b[1] = bytes.x; list[5].b[2] = uchar(both >> 32);
    list[5].b[3] = uchar(as_type<char4>(uint(both)).x); list[5].b[4] = uchar(as_type<ushort>(halves.y) & 255);
    list[5].b[5] = uchar(ushort3(uint3(pair, 3)).z); list[5].b[6] = uchar3(uint3(pair, 300)).z;
    list[5].b[7] = uchar2(as_type<ushort2>(0x01020304u)).y;
    packed_uchar3 packed[5];
    for (int j = 0; j < 5; j++) packed[j] = packed_uchar3(uchar(j), 2, 3);
    list[6].b[0] = packed[two].x; list[6].b[1] = packed[two + 1].z;
}
kernel void tell(device float* out [[buffer(0)]], device Bytes* list [[buffer(2)]]) {
    for (int i = 0; i < 8; i++) { out[i] = float(list[3].b[i]); out[12 + i] = float(list[5].b[i]); }
    for (int i = 0; i < 4; i++) out[8 + i] = float(list[4].b[i]);
    out[20] = float(list[6].b[0]); out[21] = float(list[6].b[1]);
    device Mixed* mixed = (device Mixed*)(list + 100);
    out[22] = float(mixed[1].s[3]); out[23] = float(mixed[1].t[2]); out[24] = float(mixed[1].t[9]);
    device Seen* seen = (device Seen*)(list + 200);
    out[25] = seen[6].f.x; out[26] = seen[5].f.w;
}
