// Metal's attributes (`[[buffer(0)]]`, `[[stage_in]]`, `[[position]]`...), kept on Clang's
// declarations as tags that start with "msl:".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace clang {
class Decl;
} // namespace clang

namespace tarnwick::msl {

// Makes Clang know the attributes. Before the first parse of the process; again does nothing.
void registerAttributes();

struct MetalAttribute {
    std::string word;        // "buffer", "position", "msl_fragment", ...
    std::uint32_t index = 0; // its number, where it has one
    bool hasIndex = false;
    std::string text; // its word in parentheses: user(locn0)
};

// Those of one declaration, in the order written.
std::vector<MetalAttribute> metalAttributes(const clang::Decl& declaration);

std::optional<MetalAttribute> metalAttribute(const clang::Decl& declaration,
                                             const std::string& word);

} // namespace tarnwick::msl
