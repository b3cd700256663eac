// Operators of records: arithmetic, comparison, index, call, conversion, assignment, increment (1.5.1).
// @expects 4 6 | 5 | 1 0 | 2 | 12 | 3 4 | 7 | 8
#include <metal_stdlib>
using namespace metal;

struct Complex {
    float re, im;
    Complex operator+(Complex o) const { return {re + o.re, im + o.im}; }
    thread Complex& operator*=(float s) { re *= s; im *= s; return *this; }
    bool operator==(Complex o) const { return re == o.re && im == o.im; }
    bool operator!=(Complex o) const { return !(*this == o); }
    float operator[](int i) const { return i == 0 ? re : im; }
    float operator()(float s) const { return s * re * im; }
    thread Complex& operator++() { re += 1; return *this; }
    Complex operator++(int) { Complex was = *this; ++*this; return was; }
    explicit operator bool() const { return re != 0 || im != 0; }
    operator float2() const { return float2(re, im); }
};
Complex operator*(float s, Complex c) { return {s * c.re, s * c.im}; }
float operator|(Complex a, Complex b) { return a.re * b.re + a.im * b.im; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Complex a = {in[1], in[2]}, b = {in[3], in[4]};
    Complex c = a + b;
    out[0] = c.re; out[1] = c.im;
    out[2] = a | Complex{1, 2};
    out[3] = a == Complex{1, 2}; out[4] = a != Complex{1, 2};
    out[5] = a[1];
    out[6] = b(1);
    Complex was = a++;
    out[7] = was.re + a.re; out[8] = (++b).re;
    float2 v = 0.5 * c + Complex{5, 5};
    out[9] = v.x;
    c *= 2;
    out[10] = c ? c.re : 0;
}
