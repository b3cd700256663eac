// The attributes of values that a stage takes or gives: where each may stand, and on what types.
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <cstdint>
#include <string_view>

namespace tarnwick::msl {

// Metal Shading Language 3.1, 5.2.3 and 5.4.
struct BuiltInWord {
    enum class Element : std::uint8_t { unsigned_, float_, bool_, any };

    std::string_view word;
    Element element = Element::unsigned_;
    std::uint32_t mostLanes = 1; // fewer are taken of a kernel's positions and sizes alone
    bool isVertexInput = false, isFragmentInput = false, isKernelInput = false;
    bool isVertexResult = false, isFragmentResult = false;

    bool isInputOf(Stage stage) const {
        return stage == Stage::vertex     ? isVertexInput
               : stage == Stage::fragment ? isFragmentInput
                                          : isKernelInput;
    }
    bool isResultOf(Stage stage) const {
        return stage == Stage::vertex ? isVertexResult : isFragmentResult;
    }
    // Whether a value of that shape may have the attribute.
    bool takes(const StageValue& value) const;
};

// "vertex", "fragment" or "kernel".
std::string_view stageName(Stage stage);

// Null for other words.
const BuiltInWord* builtInWord(std::string_view word);

} // namespace tarnwick::msl
