// Kernels made from templates, each under its host_name; entry points in namespaces (5.1.10, 5.1.11).
// @runs fill_float 4
// @runs times_three 4
// @runs tools::last 1
// @expects 0 3 6 100
#include <metal_stdlib>
using namespace metal;

template <typename T>
kernel void fill(device T* out [[buffer(0)]], uint i [[thread_position_in_grid]]) { out[i] = T(i); }

template [[host_name("fill_float")]] kernel void fill<float>(device float*, uint);
template [[host_name("fill_int")]] kernel void fill<int>(device int*, uint);

template <int factor> [[kernel]] void times(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    out[i] *= factor;
}
template [[host_name("times_three")]] [[kernel]] void times<3>(device float*, uint);

namespace tools {
kernel void last(device float* out [[buffer(0)]]) { out[3] = 100; }
}
