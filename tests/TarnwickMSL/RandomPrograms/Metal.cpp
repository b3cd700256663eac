#include "tests/TarnwickMSL/RandomPrograms/Metal.h"

#include "tests/TarnwickMSL/RandomPrograms/Generator.h"

namespace tarnwick::trials {

namespace {

constexpr const char* head = R"(#include <metal_stdlib>
using namespace metal;
)";

constexpr const char* tail =
    R"(uint trial_input(uint index) { return index < 64u ? index : index * 2654435761u; }

kernel void trial_kernel(device uint* results [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    results[i] = trial(trial_input(i));
}

struct Corner {
    float4 position [[position]];
};
struct Pixel {
    uint value [[color(0)]];
};

vertex Corner trial_vertex(uint id [[vertex_id]]) {
    Corner corner;
    corner.position = float4(float((id << 1) & 2) * 2.0 - 1.0, float(id & 2) * 2.0 - 1.0, 0.0, 1.0);
    return corner;
}

fragment Pixel trial_fragment(Corner corner [[stage_in]]) {
    Pixel pixel;
    pixel.value = trial(trial_input(uint(corner.position.y) * 16u + uint(corner.position.x)));
    return pixel;
}
)";

} // namespace

std::string metalSource(const std::string& body) {
    return head + body + tail;
}

std::string metalSource(std::uint64_t seed) {
    return metalSource(randomProgram(seed));
}

} // namespace tarnwick::trials
