// Plain and scoped enumerations, their values, and switches over them.
// @expects 2 | 5 | 20 | 1
#include <metal_stdlib>
using namespace metal;

enum Side { left, right = 5, top };
enum class Mode : uchar { dark = 1, light };
float brightness(Mode mode) {
    switch (mode) {
        case Mode::dark: return 10.0;
        case Mode::light: return 20.0;
    }
    return 0.0;
}

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    Mode mode = Mode(int(in[2]));
    out[0] = float(uint(mode));
    Side side = in[1] > 0.0 ? right : left;
    out[1] = float(side);
    out[2] = brightness(mode);
    out[3] = float(top - right);
}
