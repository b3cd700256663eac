// A compilation as a JSON document for programs (docs/embedding.md describes it).
#pragma once

#include "TarnwickMSL/Compilation.h"

#include <string>
#include <string_view>

namespace tarnwick {

// With the entry point `only`, or all if it is empty. Ends with a line break.
std::string reflectionDocument(const msl::Compilation& compilation, std::string_view file,
                               std::string_view only);

} // namespace tarnwick
