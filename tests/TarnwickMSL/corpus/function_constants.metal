// Function constants of every type, constants computed of them, and those without a value (5.8).
// @constant flag true
// @constant tiny -100
// @constant byte 200
// @constant small -30000
// @constant word 60000
// @constant count 5
// @constant mask 4000000000
// @constant far -5000000000
// @constant fine 0.25
// @constant scale 2.5
// @constant tint 1 0.5 -2
// @constant pair 3 -4
// @constant lanes 1 0 1 0
// @constant soft 0.5 8
// @constant mode 2
// @expects 1 -100 200 -30000 60000 5 | 1 1 0.25 2.5 | 1 0.5 -2 | 3 -4 | 1 0 1 0 | 0.5 8 | 2 |
// @expects 15 7.5 -1 3.5 1 0 7 12 9 | 10 20
#include <metal_stdlib>
using namespace metal;

enum class Mode { plain, shiny, matte };
enum Slot { flagSlot = 3, tinySlot };

constant bool flag [[function_constant(flagSlot)]];
constant char tiny [[function_constant(tinySlot)]];
constant uchar byte [[function_constant(5)]];
constant short small [[function_constant(6)]];
static constant ushort word [[function_constant(7)]];
constant int count [[function_constant(8)]];
constant uint mask [[function_constant(9)]];
constant long far [[function_constant(10)]];
constant half fine [[function_constant(11)]];
constant float scale [[function_constant(12)]];
constant float3 tint [[function_constant(13)]];
constant int2 pair [[function_constant(14)]];
namespace inner {
constant bool4 lanes [[function_constant(15)]];
}
constant half2 soft [[function_constant(16)]];
constant Mode mode [[function_constant(100)]];
constant float unset [[function_constant(1000)]];

constant bool both = flag && count > 4;
constant float widened = both ? scale * 3 : 0.0f;
constant float3 shifted = tint * scale + float3(1.25, 0, 0);
constexpr constant int base = 10;
constant int sum = count + base;
constant float fallback = is_function_constant_defined(unset) ? unset : -1.0f;
constant bool isKnown = is_function_constant_defined(scale);
struct Entry { float first; int second; };
constant Entry entries[3] = {{scale, 1}, {7.0f, count + 7}, {9.0f, 0}};

kernel void check(device float* out [[buffer(0)]]) {
    int at = 0;
    out[at++] = flag;
    out[at++] = tiny;
    out[at++] = byte;
    out[at++] = small;
    out[at++] = word;
    out[at++] = count;
    out[at++] = mask == 4000000000u;
    out[at++] = far == -5000000000l;
    out[at++] = fine;
    out[at++] = scale;
    for (int i = 0; i < 3; i++) out[at++] = tint[i];
    out[at++] = pair.x;
    out[at++] = pair.y;
    for (int i = 0; i < 4; i++) out[at++] = inner::lanes[i];
    out[at++] = soft.x;
    out[at++] = soft.y;
    out[at++] = int(mode);
    out[at++] = sum;
    out[at++] = widened;
    out[at++] = fallback;
    out[at++] = shifted.x + shifted.y + shifted.z + 2.5 + 1.0;
    out[at++] = isKnown;
    out[at++] = metal::is_function_constant_defined(unset);
    out[at++] = entries[count - 4].first;
    out[at++] = entries[pair.x - 2].second;
    out[at++] = entries[2].first;
    int rounds = 0;
    for (int i = 0; i < count; i++) rounds += i;
    out[at++] = rounds;
    switch (mode) {
    case Mode::matte: out[at++] = 20; break;
    default: out[at++] = 30;
    }
}
