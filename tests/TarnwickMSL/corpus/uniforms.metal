// Values that are equal in all threads: made of constants and of each other, in memory, arguments,
// results, vectors, records and templates.
// @runs check 2 2
// @expects 5 | 11 | 8 6 4 | 2.5 | 9 | 3 | 7 | 12 | 1.5 -1.5 | 6 | 20 | 1 | 6 | 4
#include <metal_stdlib>
#include <metal_uniform>
using namespace metal;

struct Shape {
    uniform<uint> sides;
    uniform<float3> size;
    uint own;
};

template <class T> T twice(uniform<T> x) {
    return x * 2;
}

uniform<int> sum(uniform<int> a, uniform<int> b) {
    return a + b;
}

using Count = uniform<uint>;

constant metal::uniform<float> half_of_three = 1.5;

kernel void check(device float* out [[buffer(0)]], constant uniform<float>* in [[buffer(1)]],
                  device uint* scratch [[buffer(2)]], uint at [[thread_position_in_grid]],
                  uniform<uint> group [[threadgroup_position_in_grid]]) {
    if (at != 1)
        return;
    uniform<int> i = 2, j(3);
    uniform<int> k = i + j;
    out[0] = k;
    k += i * j;
    out[1] = k++ - group;
    uniform<float3> v = {4, 3, 2};
    uniform<float3> w(v * in[2]);
    out[2] = w.x, out[3] = w.y, out[4] = w.zyx.x;
    uniform<float> list[3] = {in[0], in[1], 2.5};
    device uniform<uint>* words = scratch;
    words[3] = 2u;
    out[5] = list[words[3]];
    Shape shape = {3, float3(1, 2, 3), at};
    out[6] = shape.size.y * shape.size.z + shape.sides;
    uniform<uint> sides = shape.sides;
    out[7] = sides;
    out[8] = twice(v.x) - at;
    out[9] = k; // 12
    const thread uniform<int>& again = k;
    uniform<float2> pair = uniform<float2>(half_of_three, -half_of_three);
    out[10] = pair.x, out[11] = pair.y;
    out[12] = sum(again - 10, i + 2);
    const Count count = 5;
    float total = 0;
    for (uniform<uint> n = 0; n < count; n++)
        total += n * 2;
    out[13] = total;
    uniform<bool> isSmall = uniform<bool>(total < 30);
    out[14] = isSmall;
    uniform<vec<float, 2>> corner = uniform<vec<float, 2>>(2, 3);
    out[15] = corner.x * corner.y;
    metal::uniform<int> explicit_ = uniform<int>(at) * 4;
    out[16] = max(explicit_, i);
}
