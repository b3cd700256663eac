// The files that a compilation has read, as a rule for make.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// "TARGET: SOURCE FILE...", and an empty rule for each file but the source, so that make does not
// fail after one was removed. Spaces, "#", "$" and backslashes before them are escaped as make
// reads them.
std::string dependencyRule(std::string_view target, std::string_view source,
                           const std::vector<std::string>& files);

} // namespace tarnwick
