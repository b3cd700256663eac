// The attributes of the values that a stage takes or returns: the stages and the types of each.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <cstdint>
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

    bool isInputOf(Stage stage, PatchKind patch) const {
        return patch != PatchKind::none   ? isPatchInput
               : stage == Stage::vertex   ? isVertexInput
               : stage == Stage::fragment ? isFragmentInput
                                          : isKernelInput;
    }
    bool isResultOf(Stage stage) const {
        return stage == Stage::vertex ? isVertexResult : isFragmentResult;
    }
    // Whether the attribute is valid for a value of that scalar and width.
    bool takes(const StageValue& value) const;
};

// "vertex", "fragment" or "kernel".
std::string_view stageName(Stage stage);

// All of them.
std::span<const BuiltInWord> builtInWords();

// Null if the word is not a built-in value.
const BuiltInWord* builtInWord(std::string_view word);

} // namespace tarnwick::msl
