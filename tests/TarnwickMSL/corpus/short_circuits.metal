// The right side of && and || runs only where it must, side effects and all.
// @expects 1 2 2 3 | 7 | 0
#include <metal_stdlib>
using namespace metal;

bool touch(thread int& count, bool answer) { count++; return answer; }

kernel void check(device float* out [[buffer(0)]], constant float* in [[buffer(1)]]) {
    int count = 0;
    bool yes = in[1] > 0.0;
    if (yes || touch(count, true)) out[0] = float(count + 1);
    if (yes && touch(count, false)) out[0] = 99.0;
    if (!yes || (touch(count, true) && yes)) out[1] = float(count);
    if (!yes && touch(count, true)) out[1] = 99.0;
    out[2] = float(count);
    bool kept = (touch(count, false) || !yes) && touch(count, true);
    out[3] = float(count);
    int i = 0;
    while (i < 7 && touch(i, true)) {}
    out[4] = float(i);
    out[5] = float(kept);
}
