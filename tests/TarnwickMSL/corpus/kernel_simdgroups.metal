// Which SIMD-group and quad a thread is in: what the numbers say of each other.
// @runs check 64 64
// @expects 64*1
#include <metal_stdlib>
using namespace metal;

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], ushort i [[thread_index_in_threadgroup]], uint lane [[thread_index_in_simdgroup]],
    ushort group [[simdgroup_index_in_threadgroup]], uint size [[threads_per_simdgroup]],
    ushort groups [[simdgroups_per_threadgroup]], uint width [[thread_execution_width]],
    uint most [[dispatch_simdgroups_per_threadgroup]], ushort inQuad [[thread_index_in_quadgroup]],
    ushort quad [[quadgroup_index_in_threadgroup]], ushort quads [[quadgroups_per_threadgroup]],
    uint mostQuads [[dispatch_quadgroups_per_threadgroup]]) {
    bool isRight = group * size + lane == i && groups == (64 + size - 1) / size && width == size &&
                   most == groups && inQuad == lane % 4 && quad == i / 4 && quads == 16 && mostQuads == 16;
    out[i] = isRight ? 1.0 : 0.0;
}
