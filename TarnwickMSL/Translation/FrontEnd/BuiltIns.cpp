#include "TarnwickMSL/Translation/FrontEnd/BuiltIns.h"

#include <algorithm>
#include <array>

namespace tarnwick::msl {

using Element = BuiltInWord::Element;

constexpr BuiltInWord kernelInput(std::string_view word, std::uint32_t lanes) {
    return {.word = word,
            .mostLanes = lanes,
            .takesFewer = true,
            .isKernelInput = true,
            .isMeshInput = true};
}

// A number of the SIMD-group or quad of a fragment or a kernel's thread.
constexpr BuiltInWord groupInput(std::string_view word) {
    return {.word = word, .isFragmentInput = true, .isKernelInput = true, .isMeshInput = true};
}

// clang-format off
static constexpr std::array words{
    BuiltInWord{.word = "vertex_id", .isVertexInput = true},
    BuiltInWord{.word = "instance_id", .isVertexInput = true, .isPatchInput = true},
    BuiltInWord{.word = "base_vertex", .isVertexInput = true},
    BuiltInWord{.word = "base_instance", .isVertexInput = true, .isPatchInput = true},
    BuiltInWord{.word = "patch_id", .isPatchInput = true},
    // Three coordinates in a triangle, two in a quad.
    BuiltInWord{.word = "position_in_patch", .element = Element::float_, .mostLanes = 3, .takesFewer = true, .isPatchInput = true},
    BuiltInWord{.word = "amplification_id", .isVertexInput = true, .isFragmentInput = true, .isPatchInput = true, .isMeshInput = true},
    BuiltInWord{.word = "amplification_count", .isVertexInput = true, .isFragmentInput = true, .isPatchInput = true, .isMeshInput = true},
    BuiltInWord{.word = "position", .element = Element::float_, .mostLanes = 4, .isFragmentInput = true, .isVertexResult = true},
    // Vertex results often serve as fragment input; point_size is 0 there.
    BuiltInWord{.word = "point_size", .element = Element::float_, .isFragmentInput = true, .isVertexResult = true},
    BuiltInWord{.word = "clip_distance", .element = Element::float_, .isFragmentInput = true, .isVertexResult = true},
    BuiltInWord{.word = "render_target_array_index", .isFragmentInput = true, .isVertexResult = true, .isPrimitiveResult = true},
    BuiltInWord{.word = "viewport_array_index", .isFragmentInput = true, .isVertexResult = true, .isPrimitiveResult = true},
    // Results of a mesh serve as fragment input as well; primitive_culled is false there.
    BuiltInWord{.word = "primitive_culled", .element = Element::bool_, .isFragmentInput = true, .isPrimitiveResult = true},
    BuiltInWord{.word = "point_coord", .element = Element::float_, .mostLanes = 2, .isFragmentInput = true},
    BuiltInWord{.word = "front_facing", .element = Element::bool_, .isFragmentInput = true},
    BuiltInWord{.word = "primitive_id", .isFragmentInput = true, .isPrimitiveResult = true},
    BuiltInWord{.word = "barycentric_coord", .element = Element::float_, .mostLanes = 3, .takesFewer = true, .isFragmentInput = true},
    BuiltInWord{.word = "sample_id", .isFragmentInput = true},
    BuiltInWord{.word = "sample_mask", .isFragmentInput = true, .isFragmentResult = true},
    BuiltInWord{.word = "color", .element = Element::any, .mostLanes = 4, .takesFewer = true, .isFragmentInput = true, .isFragmentResult = true},
    BuiltInWord{.word = "depth", .element = Element::float_, .isFragmentResult = true},
    BuiltInWord{.word = "stencil", .isFragmentResult = true},
    groupInput("thread_index_in_simdgroup"),
    groupInput("threads_per_simdgroup"),
    groupInput("thread_execution_width"),
    groupInput("thread_index_in_quadgroup"),
    kernelInput("thread_position_in_grid", 3),
    kernelInput("thread_position_in_threadgroup", 3),
    kernelInput("threadgroup_position_in_grid", 3),
    kernelInput("threads_per_grid", 3),
    kernelInput("threads_per_threadgroup", 3),
    kernelInput("dispatch_threads_per_threadgroup", 3),
    kernelInput("threadgroups_per_grid", 3),
    kernelInput("thread_index_in_threadgroup", 1),
    kernelInput("simdgroup_index_in_threadgroup", 1),
    BuiltInWord{.word = "grid_size", .mostLanes = 3, .takesFewer = true, .isKernelInput = true},
    BuiltInWord{.word = "grid_origin", .mostLanes = 3, .takesFewer = true, .isKernelInput = true},
    kernelInput("simdgroups_per_threadgroup", 1),
    kernelInput("dispatch_simdgroups_per_threadgroup", 1),
    kernelInput("quadgroup_index_in_threadgroup", 1),
    kernelInput("quadgroups_per_threadgroup", 1),
    kernelInput("dispatch_quadgroups_per_threadgroup", 1),
};
// clang-format on

bool BuiltInWord::takes(const StageValue& value) const {
    const bool isFloating = value.scalar == Scalar::float_;
    const bool isUnsigned = value.scalar == Scalar::uint32 || value.scalar == Scalar::uint16;
    const bool fits = element == Element::any         ? true
                      : element == Element::float_    ? isFloating
                      : element == Element::unsigned_ ? isUnsigned
                                                      : value.scalar == Scalar::bool_;
    return fits && (takesFewer ? value.width <= mostLanes : value.width == mostLanes);
}

static constexpr std::array<std::string_view, 5> stageNames{"vertex", "fragment", "kernel",
                                                            "object", "mesh"};

std::string_view stageName(Stage stage) {
    return stageNames[static_cast<std::size_t>(stage)];
}

std::optional<Stage> stageNamed(std::string_view name) {
    const auto* found = std::ranges::find(stageNames, name);
    return found == stageNames.end()
               ? std::nullopt
               : std::optional(static_cast<Stage>(found - stageNames.begin()));
}

std::span<const BuiltInWord> builtInWords() {
    return words;
}

const BuiltInWord* builtInWord(std::string_view word) {
    for (const BuiltInWord& known : words)
        if (known.word == word)
            return &known;
    return nullptr;
}

} // namespace tarnwick::msl
