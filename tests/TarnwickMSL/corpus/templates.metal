// Templates of functions and records, with numbers as arguments, specialised, and deduced.
// @expects 9 | 5 | 6 | 3 7 | 42 | 2.5
#include <metal_stdlib>
using namespace metal;

template <typename T> T square(T x) { return x * x; }
template <typename T, int n> struct Stack {
    T items[n];
    int count = 0;
    void push(T item) { if (count < n) items[count++] = item; }
    T top() const { return items[count - 1]; }
};
template <int n> float power(float x) { return x * power<n - 1>(x); }
template <> float power<0>(float x) { return 1.0; }
template <typename T> struct Name { static constexpr constant int value = 0; };
template <> struct Name<float2> { static constexpr constant int value = 42; };
template <typename A, typename B> auto halved(A a, B b) { return (a + b) / B(2); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = square(in[3]);
    Stack<float, 3> stack;
    stack.push(in[4]);
    stack.push(in[5]);
    out[1] = stack.top();
    Stack<int2, 2> pairs;
    pairs.push(int2(3));
    out[2] = float(pairs.top().x + pairs.top().y);
    float2 v = square(float2(in[1], in[2])) + float2(2.0, 3.0);
    out[3] = v.x; out[4] = v.y;
    out[5] = float(Name<float2>::value);
    out[6] = halved(in[2], in[3]);
    out[6] *= power<3>(in[1]);
}
