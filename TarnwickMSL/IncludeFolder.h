// A folder of files for #include.
#pragma once

#include <string>

namespace tarnwick::msl {

struct IncludeFolder {
    std::string name; // as the host spells it, for messages
    std::string path; // absolute

    bool operator==(const IncludeFolder&) const = default;
};

} // namespace tarnwick::msl
