// A program's text without what only people read.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `source` with blanks in place of its comments and strings, byte for byte, so that all else stands
// where it stood; line breaks stay. Any bytes are taken.
std::string codeText(std::string_view source);

} // namespace tarnwick
