// Reads the names of the library from Clang's tree of its declarations.
#pragma once

#include "TarnwickMSL/Declarations/Generator/Signatures.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::msl {

struct ListedName {
    std::string kind;                // the name of a LibraryName::Kind
    std::vector<Overload> overloads; // of functions
    std::string type;                // of variables
};

// By owner and name.
using Listing = std::map<std::pair<std::string, std::string>, ListedName>;

// Names that begin with an underscore are internal. Throws std::runtime_error with Clang's text if
// the library does not compile.
Listing libraryListing();

} // namespace tarnwick::msl
