// Functions and lambdas given to templates, function objects, overloads chosen by type (1.5.2).
// @expects 9 | 14 | 4 1 | 12 | 30
#include <metal_stdlib>
using namespace metal;

struct Square { float operator()(float x) const { return x * x; } };
struct Scale { float by; float operator()(float x) const { return by * x; } };
template <typename F> float applied(F f, float x) { return f(x); }
template <typename F, int N> float mapped(F f, thread const float (&all)[N]) {
    float sum = 0;
    for (int i = 0; i < N; i++) sum += f(all[i]);
    return sum;
}
template <typename F, typename G> auto then(F f, G g) {
    return [=](float x) { return g(f(x)); };
}
float kind(float) { return 1; }
float kind(half) { return 2; }
float kind(int) { return 3; }
float kind(uint) { return 4; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = applied(Square{}, in[3]);
    float all[3] = {in[1], in[2], in[3]};
    out[1] = mapped(Square(), all);
    out[2] = kind(uint(in[1])); out[3] = kind(in[1]);
    out[4] = then(Scale{2}, Scale{3})(in[2]);
    out[5] = mapped([&](float x) { return x * in[5]; }, all);
}
