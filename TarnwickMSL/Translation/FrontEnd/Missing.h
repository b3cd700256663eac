// What the language has on other platforms and this compiler has not: named so that programs which
// ask for it are told so, rather than that the word is unknown.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick::msl {

bool isMissingAttribute(std::string_view word);
bool isMissingName(std::string_view name);

// The whole sentence about a name or an attribute.
std::string missing(std::string_view what);

} // namespace tarnwick::msl
