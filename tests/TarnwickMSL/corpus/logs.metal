// Logs, which a compilation without them drops with all that they compute (<metal_logging>, 3.2).
// @runs check 4 4
// @expects 0 1 2 3
#include <metal_stdlib>
#include <metal_logging>
using namespace metal;

constant metal::os_log mine("tarnwick.test", "corpus");

static void tell(float x) { os_log_default.log_info("x is %.2f", x); }

kernel void check(device float* out [[buffer(0)]], device uint* scratch [[buffer(2)]], ushort i [[thread_position_in_grid]]) {
    out[i] = i;
    os_log_default.log("thread %hu of %u: %v4hlf 100%%", i, 4u, float4(i, 2, 3, 4));
    mine.log_debug("nothing");
    if (i > 1) tell(scratch[i]);
    mine.log_error("%ld %d %x", long(i), char(-1), i == 2);
    mine.log_fault("%v2d", int2(i));
}
