// Atomic operations at byte addresses of untyped buffers and of threadgroup memory (2.6).
// @expects 0 | 3 | 2.5 | 9 | 4
#include <metal_stdlib>
using namespace metal;

template <typename T> static void add(device void* address, T value) {
    device atomic_uint* word = (device atomic_uint*)address;
    uint expected = atomic_load_explicit(word, memory_order_relaxed);
    while (!atomic_compare_exchange_weak_explicit(word, &expected,
                                                  as_type<uint>(as_type<T>(expected) + value),
                                                  memory_order_relaxed, memory_order_relaxed)) {}
}

kernel void check(device void* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    const uint3 offsets = uint3(in[1], in[2], in[3]) * uint3(4, 4, 1); // 4, 8, 3
    device char* bytes = (device char*)out;
    ((device float3*)out)[0] = 0;
    add(bytes + offsets.x, 1.0);
    add(bytes + offsets.x, 2.0);
    add(bytes + int64_t(offsets.z) + 5, 2.5);
    threadgroup int list[8];
    list[uint(in[2])] = 4;
    threadgroup char* local = (threadgroup char*)list;
    atomic_fetch_add_explicit((threadgroup atomic_int*)(local + 5 + offsets.z), 5,
                              memory_order_relaxed);
    ((device float*)out)[3] = list[uint(in[2])];
    ((device float*)out)[4] = offsets.x;
}
