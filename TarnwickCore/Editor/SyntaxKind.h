// The kinds of coloured text in an episode's source.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarnwick {

enum class SyntaxKind : std::uint8_t {
    comment,
    header,    // a comment line with a declaration: // @param ...
    headerKey, // its @param; inside the header, and after it in a list
    keyword,
    type,
    number,
    string,
    preprocessor,
    attribute,
};

// The name of the case: "comment", "headerKey".
std::string_view rawValue(SyntaxKind kind);

} // namespace tarnwick
