// The kinds of coloured text in an episode's source.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarnwick {

enum class SyntaxKind : std::uint8_t {
    comment,
    header,    // a comment line with a declaration: // @param ...
    headerKey, // the @param in a header; in a list it follows its header
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
