// The attributes of the values that a stage takes or returns: the stages and the types of each.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tarnwick::msl {

// Metal Shading Language 3.1, 5.2.3 and 5.4.
struct BuiltInWord {
    enum class Element : std::uint8_t { unsigned_, float_, bool_, any };

    std::string_view word;
    Element element = Element::unsigned_;
    std::uint32_t mostLanes = 1;
    bool takesFewer = false; // lanes
    bool isVertexInput = false, isFragmentInput = false, isKernelInput = false;
    bool isVertexResult = false, isFragmentResult = false;
    bool isPatchInput = false; // of a post-tessellation vertex function
    bool isMeshInput = false;  // of object and mesh functions
    bool isPrimitiveResult =
        false; // of a mesh, whose vertices have the results of vertex functions

    bool isInputOf(Stage stage, PatchKind patch) const {
        return patch != PatchKind::none   ? isPatchInput
               : stage == Stage::vertex   ? isVertexInput
               : stage == Stage::fragment ? isFragmentInput
               : stage == Stage::kernel   ? isKernelInput
                                          : isMeshInput;
    }
    bool isResultOf(Stage stage) const {
        return stage == Stage::fragment ? isFragmentResult
                                        : stage == Stage::vertex && isVertexResult;
    }
    // Whether a mesh function gives the value for each vertex, or for each primitive.
    bool isResultOfMesh(bool isOfPrimitive) const {
        return isOfPrimitive ? isPrimitiveResult : isVertexResult && !isPrimitiveResult;
    }
    // Whether the attribute is valid for a value of that scalar and width.
    bool takes(const StageValue& value) const;
};

// "vertex", "fragment", "kernel", "object" or "mesh".
std::string_view stageName(Stage stage);
std::optional<Stage> stageNamed(std::string_view name);

// All of them.
std::span<const BuiltInWord> builtInWords();

// Null if the word is not a built-in value.
const BuiltInWord* builtInWord(std::string_view word);

} // namespace tarnwick::msl
