// An optional value, a tagged union of shapes, and a small machine of states (1.5).
// @expects 5 7 | 12 6 0 | 3 | 1
#include <metal_stdlib>
using namespace metal;

template <typename T> struct Optional {
    T value;
    bool has;
    static Optional none() { return {T(0), false}; }
    static Optional some(T v) { return {v, true}; }
    T valueOr(T other) const { return has ? value : other; }
};
enum class Kind : uchar { circle, box, none };
struct Shape {
    Kind kind;
    union {
        float radius;
        float2 sides;
    };
    float area() const {
        switch (kind) {
            case Kind::circle: return 3 * radius * radius;
            case Kind::box: return sides.x * sides.y;
            case Kind::none: break;
        }
        return 0;
    }
};
Shape circle(float r) { Shape s; s.kind = Kind::circle; s.radius = r; return s; }
Shape box(float a, float b) { Shape s; s.kind = Kind::box; s.sides = float2(a, b); return s; }
Optional<float> root(float x) { return x < 0 ? Optional<float>::none() : Optional<float>::some(sqrt(x)); }

enum State { start, digits, done, failed };
State step(State s, float x) {
    switch (s) {
        case start: return x > 0 ? digits : failed;
        case digits: return x > 0 ? digits : done;
        default: return s;
    }
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    out[0] = root(in[25]).valueOr(7); out[1] = root(-in[25]).valueOr(7);
    Shape shapes[3] = {circle(in[2]), box(in[2], in[3])};
    shapes[2].kind = Kind::none;
    for (int i = 0; i < 3; i++) out[2 + i] = shapes[i].area();
    State state = start;
    int steps = 0;
    float tape[5] = {in[1], in[2], in[0], in[4], in[5]};
    for (; state != done && state != failed; steps++) state = step(state, tape[steps]);
    out[5] = steps;
    out[6] = state == done;
}
