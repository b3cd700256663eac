// Function pointers: arguments, locals, tables, members of records, references; visible functions
// (1.5.4, 5.1.4, 5.1.5).
// @expects 4 9 1 | 6 -2 5 | 12 27 | 3 | 5 5 | 21 | 8 | 3 2
#include <metal_stdlib>
using namespace metal;

typedef float (*Curve)(float);
using Join = float (*)(float, float);

[[visible]] float doubled(float x) { return x * 2; }
[[stitchable]] float squared(float x) { return x * x; }
static float one(float) { return 1; }
float added(float a, float b) { return a + b; }
float subtracted(float a, float b) { return a - b; }

float call(float (*f)(float), float x) { return f(x); }
float twice(Curve f, float x) { return call(f, call(f, x)); }
template <class F> float applied(F f, float x) { return f(x); }
float through(float (&f)(float), float x) { return f(x); }

constant Curve curves[] = {doubled, squared, one};
struct Operator { Join join; float right; };
constant Operator operators[2] = {{added, 4}, {subtracted, 4}};

struct Large { float values[5]; };
Large filled(float x) {
    Large made;
    for (int i = 0; i < 5; i++) made.values[i] = x + i;
    return made;
}
Large emptied(float) { return {}; }
void increased(thread float& x) { x += 1; }
void decreased(thread float& x) { x -= 1; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int n = int(in[1]); // 1
    out[0] = call(doubled, 2);
    out[1] = call(&squared, 3);
    out[2] = applied(one, 5);
    out[3] = operators[n - 1].join(2, operators[n - 1].right);
    out[4] = operators[n].join(2, operators[n].right);
    Join join = n > 0 ? added : subtracted;
    out[5] = join(2, 3);
    Curve chosen = one;
    if (n == 1) chosen = doubled;
    out[6] = twice(chosen, 3);
    float sum = 0;
    for (int i = 0; i < 3; i++) sum += curves[(i + n) % 3](in[4]) + (i == 2 ? 2 : 0);
    out[7] = sum;
    Curve own[2] = {squared, one};
    own[n] = curves[0];
    out[8] = own[n](1.5);
    Large (*make)(float) = n == 1 ? filled : emptied;
    out[9] = make(2).values[3];
    out[10] = through(n > 5 ? doubled : one, 7) + 4;
    float total = 0;
    for (int i = 0; i < 6; i++) {
        Curve each = i % 2 == n ? doubled : squared;
        total += each(float(i) * 0.5f) ;
    }
    out[11] = total + 7;
    float changed = 7;
    void (*change)(thread float&) = n == 1 ? increased : decreased;
    change(changed);
    out[12] = changed;
    Curve rounded = n == 1 ? static_cast<Curve>(ceil) : static_cast<Curve>(floor);
    out[13] = rounded(2.5f);
    out[14] = applied(static_cast<Curve>(abs), -2);
}
