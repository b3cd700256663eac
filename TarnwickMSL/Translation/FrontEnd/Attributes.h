// Metal's attributes (`[[buffer(0)]]`, `[[stage_in]]`, `[[position]]`...). Clang's declarations
// keep them as tags that begin with "msl:".
#pragma once

#include "TarnwickMSL/Translation/Signature.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace clang {
class Decl;
} // namespace clang

namespace tarnwick::msl {

// Registers the attributes with Clang. Required before the first parse of the process; later calls
// do nothing.
void registerAttributes();

// The words in double brackets, as a program writes them.
std::span<const char* const> attributeWords();

struct MetalAttribute {
    std::string word;        // "buffer", "position", "msl_fragment", ...
    std::uint32_t index = 0; // the number in parentheses, if hasIndex
    bool hasIndex = false;
    std::string text; // the word in parentheses: "locn0" of user(locn0), "quad" of patch(quad, 4)
};

// The attributes of one declaration, in source order.
std::vector<MetalAttribute> metalAttributes(const clang::Decl& declaration);

std::optional<MetalAttribute> metalAttribute(const clang::Decl& declaration,
                                             const std::string& word);

// That of an argument or a member, by its [[function_constant(condition)]].
Presence presenceOf(const clang::Decl& declaration);

} // namespace tarnwick::msl
