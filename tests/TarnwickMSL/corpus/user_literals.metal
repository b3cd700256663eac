// Literals of the program's own, of whole numbers (C++17).
// @expects 3000 | 0.5 | 90
#include <metal_stdlib>
using namespace metal;

constexpr int operator"" _k(unsigned long long n) { return int(n) * 1000; }
constexpr float operator"" _percent(unsigned long long n) { return n / 100.0; }
struct Angle { float degrees; };
constexpr Angle operator"" _deg(unsigned long long n) { return {float(n)}; }

kernel void check(device float* out [[buffer(0)]]) {
    out[0] = 3_k;
    out[1] = 50_percent;
    out[2] = (90_deg).degrees;
}
