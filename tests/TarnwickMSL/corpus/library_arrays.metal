// metal::array as a value: copied, returned, compared by element, iterated.
// @expects 3 | 1 9 | 10 | 4
#include <metal_stdlib>
using namespace metal;

array<float, 4> counted(constant float* in) { return {in[1], in[2], in[3], in[4]}; }
float total(array<float, 4> values) {
    float sum = 0.0;
    for (uint i = 0; i < values.size(); i++) sum += values[i];
    return sum;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    array<float, 4> a = counted(in), b = a;
    b[int(in[0])] = in[9];
    out[0] = a[int(in[2])];
    out[1] = a[0]; out[2] = b[0];
    out[3] = total(a);
    out[4] = float(a.size());
}
