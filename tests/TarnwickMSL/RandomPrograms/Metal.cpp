#include "tests/TarnwickMSL/RandomPrograms/Metal.h"

namespace tarnwick::trials {

namespace {

constexpr const char* head = R"(#include <metal_stdlib>
using namespace metal;
)";

struct Tail {
    const char *shared, *kernel, *fragment;
};

constexpr Tail plainTail{"", R"(
kernel void trial_kernel(device uint* results [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    results[i] = trial(trial_input(i));
}
)",
                         R"(
fragment Pixel trial_fragment(Corner corner [[stage_in]]) {
    return {trial(trial_input(uint(corner.position.y) * 16u + uint(corner.position.x)))};
}
)"};

constexpr const char* worldHead = R"(struct World {
    device uint4* memory;
    constant uint* words;
    texture1d<uint> line;
    texture2d<float> picture;
    texture2d_array<half> sheets;
    texture3d<int> solid;
    texture1d_array<ushort> lines;
    texture2d<uint, access::read_write> board;
    uint2 place;
};
)";

constexpr Tail worldTail{R"(
#define WORLD_ARGUMENTS device uint4* memory [[buffer(1)]], constant uint* words [[buffer(2)]], \
    texture1d<uint> line [[texture(0)]], texture2d<float> picture [[texture(1)]], \
    texture2d_array<half> sheets [[texture(2)]], texture3d<int> solid [[texture(3)]], \
    texture1d_array<ushort> lines [[texture(4)]], \
    texture2d<uint, access::read_write> board [[texture(5)]]
#define WORLD_OF(i) {memory + (i) * 256u, words, line, picture, sheets, solid, lines, board, \
    uint2((i) % 16u, (i) / 16u)}
)",
                         R"(
kernel void trial_kernel(device uint* results [[buffer(0)]], WORLD_ARGUMENTS,
                         uint i [[thread_position_in_grid]]) {
    World world = WORLD_OF(i);
    results[i] = trial(trial_input(i), world);
}
)",
                         R"(
fragment Pixel trial_fragment(Corner corner [[stage_in]], WORLD_ARGUMENTS) {
    uint i = uint(corner.position.y) * 16u + uint(corner.position.x);
    World world = WORLD_OF(i);
    return {trial(trial_input(i), world)};
}
)"};

constexpr const char* groupHead = R"(
#define PHASE(phase) \
    l.h = phase(lane, group, l, s, counters); \
    threadgroup_barrier(mem_flags::mem_threadgroup | mem_flags::mem_device);
#define EACH(statement) { statement }
#define SIMD(out, function, in) l.out = function(l.in);
#define SIMD_AT(out, function, in, at) l.out = function(l.in, ushort(at));
#define SIMD_IF(condition, out, function, in) if (condition) l.out = function(l.in);
#define SIMD_VOTE(out, function, in) l.out = uint(function((l.in & 1u) != 0u));
#define QUAD_AT(out, function, in, at) l.out = function(l.in, ushort(at));
#define GROUP_PROGRAM \
    uint whole(uint lane, uint group, uint width, threadgroup Shared& s, device atomic_uint* counters)
#define GROUP_BEGIN Locals l = {};
#define GROUP_END return l.h;
)";

constexpr const char* groupTail = R"(
kernel void trial_kernel(device uint* results [[buffer(0)]],
                         device atomic_uint* counters [[buffer(1)]],
                         uint i [[thread_position_in_grid]],
                         uint lane [[thread_index_in_threadgroup]],
                         uint group [[threadgroup_position_in_grid]],
                         uint width [[threads_per_simdgroup]]) {
    threadgroup Shared s;
    results[i] = whole(lane, group, width, s, counters + group * 8u);
    if (i == 0u) results[256] = width;
}
)";

constexpr const char* input =
    R"(uint trial_input(uint index) { return index < 64u ? index : index * 2654435761u; }
)";

constexpr const char* vertex = R"(
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
)";

std::string textOf(const Tail& tail, Stages stages) {
    return std::string(input) + tail.shared + (stages.kernel ? tail.kernel : "") +
           (stages.fragment ? std::string(vertex) + tail.fragment : "");
}

} // namespace

Form formOf(const std::string& body) {
    if (body.find("GROUP_PROGRAM") != std::string::npos)
        return Form::group;
    return body.find("World world") != std::string::npos ? Form::world : Form::plain;
}

std::string metalSource(const std::string& body, Stages stages) {
    switch (formOf(body)) {
    case Form::plain:
        return head + body + textOf(plainTail, stages);
    case Form::world:
        return std::string(head) + worldHead + body + textOf(worldTail, stages);
    case Form::group:
        return std::string(head) + groupHead + body + groupTail;
    }
    return "";
}

} // namespace tarnwick::trials
