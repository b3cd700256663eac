// Attributes that the compiler does not know are passed over with a warning; those of C++ and of
// Clang are kept (5).
// @expects 1 | 2 | 3
#include <metal_stdlib>
using namespace metal;

[[nodiscard]] float one() { return 1; }
[[gnu::noinline]] static float two() { return 2; }
__attribute__((always_inline)) inline float three([[maybe_unused]] int n) { return 3; }

struct Row {
    float value [[our_own_note]];
    int [[editor::range(0, 5)]] count;
};

kernel void check(device Row* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0].value = one();
    [[maybe_unused]] int unused = 0;
    switch (int(in[1])) {
        case 1: out[0].count = as_type<int>(two()); [[fallthrough]];
        default: out[1].value = three(1);
    }
}
