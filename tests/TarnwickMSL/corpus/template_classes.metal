// Templates of classes: specialised wholly and in part, bases by the derived class, members that
// are templates, templates as arguments, deduced arguments (1.5.2).
// @expects 6 | 1 2 3 | 8 | 5 | 4 | 14 | 7
#include <metal_stdlib>
using namespace metal;

template <typename T> struct Kind { static constexpr int value = 1; };
template <> struct Kind<int> { static constexpr int value = 2; };
template <typename T> struct Kind<thread T*> { static constexpr int value = 3; };

template <typename Derived> struct Shape {
    float twice() const { return 2 * static_cast<const thread Derived*>(this)->area(); }
};
struct Square : Shape<Square> {
    float side;
    Square(float side) : side(side) {}
    float area() const { return side * side; }
};
template <template <typename> class Holder, typename T> T held(Holder<T> h) { return h.value; }
template <typename T> struct Box {
    T value;
    Box(T v) : value(v) {}
    template <typename U> U as() const { return U(value); }
};
template <typename T, int N = 2> struct Ring {
    T all[N];
    thread T& at(int i) { return all[i % N]; }
};
template <class T> constexpr constant T answer = T(4);

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Ring<float, 3> ring = {{1, 2, 3}};
    ring.at(4) += in[4];
    out[0] = ring.at(1);
    out[1] = Kind<float>::value; out[2] = Kind<int>::value; out[3] = Kind<thread float*>::value;
    out[4] = Square(in[2]).twice();
    out[5] = held(Box<float>(in[5]));
    out[6] = answer<int>;
    Box deduced(in[7]);
    out[7] = deduced.as<int>() * 2;
    out[8] = deduced.value;
}
