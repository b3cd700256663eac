// Types as a reader of a signature sees them.
#pragma once

#include <clang/AST/Type.h>

#include <string>

namespace tarnwick::msl {

// A scalar or vector has an element; other types have only a text.
struct TypeText {
    std::string text;    // "float3", "texture2d<float>", "float3&"
    std::string element; // "float"; empty for other types
    unsigned lanes = 0;  // 1 for a scalar
    std::string suffix;  // "&" or "*", part of the text

    bool operator==(const TypeText&) const = default;
};

TypeText typeText(clang::QualType type);

} // namespace tarnwick::msl
