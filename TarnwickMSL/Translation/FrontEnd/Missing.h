// Names and attributes of the language that this compiler does not support. The error message for a
// program that uses one says so, instead of "unknown name".
#pragma once

#include <string>
#include <string_view>

namespace tarnwick::msl {

bool isMissingAttribute(std::string_view word);
bool isMissingName(std::string_view name);

// The message about a name or an attribute.
std::string missing(std::string_view what);

} // namespace tarnwick::msl
