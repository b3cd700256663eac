// Every operation on atomic integers, in device memory; each of 64 threads takes part.
// @runs check 64 32
// @runs tell
// @expects 2016 -128 | 255 0 | 63 -63 | 64 | 2 7
#include <metal_stdlib>
using namespace metal;

struct Counts { uint plain; atomic_uint sum; atomic_int least[2]; atomic_uint any, all, odd; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Counts& c [[buffer(2)]], uint i [[thread_position_in_grid]]) {
    auto relaxed = memory_order_relaxed;
    atomic_fetch_add_explicit(&c.sum, i, relaxed);
    atomic_fetch_sub_explicit(&c.least[0], 2, relaxed);
    atomic_fetch_or_explicit(&c.any, 1u << i % 8, relaxed);
    atomic_fetch_and_explicit(&c.all, ~i, relaxed);
    atomic_fetch_xor_explicit(&c.odd, i + 1, relaxed);
    atomic_fetch_max_explicit((device atomic_uint*)&c.plain, i, relaxed);
    atomic_fetch_min_explicit(&c.least[1], -int(i), relaxed);
}
kernel void tell(device float* out [[buffer(0)]], device Counts& c [[buffer(2)]]) {
    auto relaxed = memory_order_relaxed;
    out[0] = float(atomic_load_explicit(&c.sum, relaxed));
    out[1] = float(atomic_load_explicit(&c.least[0], relaxed));
    out[2] = float(atomic_load_explicit(&c.any, relaxed));
    out[3] = float(atomic_load_explicit(&c.all, relaxed));
    out[4] = float(c.plain);
    out[5] = float(atomic_load_explicit(&c.least[1], relaxed));
    out[6] = float(atomic_load_explicit(&c.odd, relaxed));
    atomic_store_explicit(&c.sum, 2u, relaxed);
    out[7] = float(atomic_exchange_explicit(&c.sum, 7u, relaxed));
    out[8] = float(atomic_load_explicit(&c.sum, relaxed));
}
