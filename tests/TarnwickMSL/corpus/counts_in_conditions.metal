// Counters that count in a condition only where the conditions before them hold (1.5).
// @runs check 32 32
// @expects 6564740 3960563 14212282 9548041 542578 3025600 12756523 7006319 14732222 2090638 16201594 4557227 3386117 1155675 5763518 10110162 2997622 220713 10926883 16369133 8763797 16062967 14675045 1362520 831967 15128004 7711279 13871810 1272443 14193042 4353327 2674972
#include <metal_stdlib>
using namespace metal;

static uint bump(thread uint& value, uint by) {
    value += by | 1u;
    return value;
}

static uint counted(uint h, float x) {
    uint count = 0u;
    while (x >= -100.0f && (bump(h, h) & 5u) != 0u && count++ < 2u) {
        x += 1.0f;
        h = (h ^ as_type<uint>(x)) * 0x9E3779B1u;
        h ^= h >> 15u;
    }
    return h;
}

kernel void check(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    out[i] = counted(i * 2654435761u, float(i) * 0.25f) >> 8u;
}
