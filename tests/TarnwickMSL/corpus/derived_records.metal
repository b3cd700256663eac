// Records from records: members, methods that hide, constructors of bases, several bases (C++17).
// @expects 1 2 | 3 | 30 | 5 6 | 12 | 7
#include <metal_stdlib>
using namespace metal;

struct Base {
    float x = 1;
    float name() const { return 3; }
    float scaled(float s) const { return s * x; }
};
struct Derived : Base {
    float y = 2;
    float name() const { return 10 * Base::name(); }
};
struct Named { float id; Named(float id) : id(id) {} };
struct Both : Base, Named {
    Both(float a, float b) : Named(b) { x = a; }
    using Base::scaled;
};
float nameOf(thread const Base& base) { return base.x + base.name(); }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Derived d;
    out[0] = d.x; out[1] = d.y;
    const thread Base& base = d;
    out[2] = base.name();
    out[3] = d.name();
    Both both(in[5], in[6]);
    out[4] = both.x; out[5] = both.id;
    out[6] = d.scaled(both.id) * 2;
    d.x = in[4];
    out[7] = nameOf(d);
}
