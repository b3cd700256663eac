// References and pointers to components of vectors and of records that have such members, and arrays
// without a length: members, arguments and variables, and array_ref.
// @expects 5 2 | 7 8 | 3 4 | 9 1 | 6 | 3 6 | 3 20 | 11
#include <metal_stdlib>
using namespace metal;

class Counted {
    float x = 3.0;
  public:
    thread float* place() thread { thread float& own = this->x; own += 1.0; return &this->x; }
};
struct Open { uint count; float values[]; };
constant float table[] = {1.0, 2.0, 3.0};

static void add(thread float& to, float more) { to += more; }
static float sum(device const float values[], uint n) {
    float s = 0.0;
    for (uint i = 0; i < n; i++) s += values[i];
    return s;
}
static float sum(array_ref<float> values) {
    float s = 0.0;
    for (float value : values) s += value;
    return s;
}

kernel void check(device float out[] [[buffer(0)]], constant float in[] [[buffer(1)]],
                  device Open& open [[buffer(2)]]) {
    float3 v = float3(1.0, 2.0, in[3]);
    thread float& x = v.x;
    x = 5.0;
    out[0] = v.x;
    out[1] = v.y;
    device float4* vectors = (device float4*)(out + 100);
    device float& green = vectors[int(in[1])].g;
    green = 7.0;
    out[2] = vectors[1].y;
    device float4* arrow = vectors + 1;
    thread auto& blue = arrow->b;
    blue = 8.0;
    out[3] = vectors[1].z;
    Counted counted;
    out[4] = 3.0;
    out[5] = *counted.place();
    thread float* z = &v.z;
    *z = 9.0;
    add(*z, 0.0);
    out[6] = v.z;
    packed_float3 p = packed_float3(1.0, 0.0, 0.0);
    thread float& first = p.x;
    out[7] = first;
    out[8] = table[0] + table[1] + table[2];

    open.count = 3;
    for (uint i = 0; i < open.count; i++) open.values[i] = float(i);
    out[9] = sum(open.values, 3);
    array<float, 3> list = {1.0, 2.0, 3.0};
    out[10] = sum(make_array_ref(list));
    float local[] = {1.0, 2.0, in[2]};
    out[11] = open.values[1] + local[int(in[2])];
    float2 pairs[][2] = {{float2(1.0), float2(2.0)}, {float2(3.0), float2(20.0)}};
    out[12] = pairs[int(in[1])][1].y;
    array_ref<float> rest(local, 3);
    out[13] = rest[2] + float(rest.size()) + 6.0;
}
