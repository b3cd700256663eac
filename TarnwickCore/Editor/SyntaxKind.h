// The kinds of coloured text in an episode's source.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarnwick {

enum class SyntaxKind : std::uint8_t {
    comment,
    header,    // a comment line of the episode's own conventions: // @param ...
    headerKey, // the @param of it; lies inside the header, and follows it in a list
    keyword,
    type,
    number,
    string,
    preprocessor,
    attribute,
};

// "comment", "headerKey": as the enumeration has it.
std::string_view rawValue(SyntaxKind kind);

} // namespace tarnwick
