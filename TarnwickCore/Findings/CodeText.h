// The text of a program without comments and strings.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `source` with its comments and strings replaced by blanks, byte for byte: all other text keeps
// its place. Line breaks are kept. Accepts any bytes.
std::string codeText(std::string_view source);

} // namespace tarnwick
