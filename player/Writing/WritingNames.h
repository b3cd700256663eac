// All names that an author can use in an episode: the episode's own, the host's and the library's.
#pragma once

#include "TarnwickMSL/Declarations/LibraryNames.h"
#include "player/Writing/SourceNames.h"

#include <span>
#include <string>
#include <string_view>

namespace tarnwick::player {

struct WritingNames {
    // Of an episode's text. Accepts any bytes.
    explicit WritingNames(std::string_view text);

    SourceNames own;
    SourceNames host; // the records that the host declares for this kind of episode

    // In the episode first, then in the host; null without one.
    const SourceRecord* record(std::string_view name) const;
};

// The library's rows of a type ("texture2d", "filter"), or without one all that need no type.
std::span<const msl::LibraryName> libraryRows(std::string_view owner);
// Null without one.
const msl::LibraryName* libraryRow(std::string_view owner, std::string_view name);

// The name of a type without its arguments: "texture2d" of "texture2d<float>".
std::string_view typeName(std::string_view type);

// Of "float3" and "uint2": the element and the number of components. 1 for scalars, 0 for other
// types.
struct VectorShape {
    std::string_view element;
    std::size_t components = 0;
};
VectorShape vectorShape(std::string_view type);

} // namespace tarnwick::player
