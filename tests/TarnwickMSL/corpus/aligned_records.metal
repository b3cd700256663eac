// Alignment that alignas asks for, empty records, enumerations as members.
// @expects 32 16 | 4 1 | 6 500
#include <metal_stdlib>
using namespace metal;

enum class Mode : ushort { off, on = 500 };
struct alignas(16) Wide { float value; };
struct Empty {};
struct Both { char c; Wide wide; };
struct Plain { Mode mode; Mode next; };
kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]], device Both* both [[buffer(2)]]) {
    out[0] = float(sizeof(Both)); out[1] = float(alignof(Both));
    out[2] = float(sizeof(Plain)); out[3] = float(sizeof(Empty));
    both[1].wide.value = in[6]; both[1].c = 1;
    out[4] = ((device float*)both)[12];
    Plain p = {Mode::off, Mode::on};
    out[5] = float(ushort(in[1] > 0.0 ? p.next : p.mode));
}
