// constexpr functions, variables and members, and what needs them: sizes, cases, arguments (C++17).
// @expects 120 | 4 | 8 | 3 | 2 | 1.5 | 0.75
#include <metal_stdlib>
using namespace metal;

constexpr int factorial(int n) {
    int product = 1;
    for (int i = 2; i <= n; i++) product *= i;
    return product;
}
constexpr int bits(uint n) {
    int count = 0;
    while (n) { count += n & 1; n >>= 1; }
    return count;
}
struct Grid {
    static constexpr constant int side = 4;
    static constexpr int cells() { return side * 2; }
};
constexpr constant float ratio = 3.0 / 2;
constant constexpr float half_of = ratio / 2;
template <int N> int given() { return N; }
static_assert(bits(0b1011) == 3, "three bits");

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    constexpr int f = factorial(5);
    out[0] = f;
    float cells[Grid::side] = {in[1], in[1], in[1], in[1]};
    out[1] = cells[0] + cells[1] + cells[2] + cells[3];
    out[2] = Grid::cells();
    out[3] = given<bits(7)>();
    switch (int(in[6])) {
        case factorial(3): out[4] = 2; break;
        default: out[4] = 0;
    }
    out[5] = ratio; out[6] = half_of;
}
