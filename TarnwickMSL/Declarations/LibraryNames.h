// The names that the standard library gives to programs, for editors. The build makes the list from
// the library's own declarations.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tarnwick::msl {

struct LibraryName {
    enum class Kind : std::uint8_t { function, type, member, enumerator, constant, attribute };

    Kind kind = Kind::function;
    // The type of a member or an enumerator: "texture2d", "filter". "[[" for attributes.
    std::string_view owner;
    std::string_view name;
    // Of a function, one line for each group of overloads: "T mix(T x, T y, T z)  T: float, half
    // and vectors". Of a variable, its type. Empty for others.
    std::string_view signatures;
    std::string_view sentence; // its description; may be empty
};

// Sorted by owner, then by name, without duplicates.
std::span<const LibraryName> libraryNames();

} // namespace tarnwick::msl
