// Names that hide outer names, in blocks, loops, conditions and records.
// @expects 1 2 3 1 | 5 | 4
#include <metal_stdlib>
using namespace metal;

constant float x = 5.0;
struct Hides { float x; float get(float y) { return x + y; } };
float outer() { return x; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    float x = in[1];
    out[0] = x;
    { float x = in[2]; out[1] = x; }
    for (float x = in[3]; x > 2.0; x -= 1.0) out[2] = x;
    out[3] = x;
    out[4] = outer();
    Hides hides = {in[3]};
    if (float y = in[1]) out[5] = hides.get(y);
}
