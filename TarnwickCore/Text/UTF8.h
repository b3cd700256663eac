// Makes outside text well-formed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// `bytes` as UTF-8 text. Each ill-formed part becomes one U+FFFD; a part is the longest that could
// begin a character (The Unicode Standard, 3.9, table 3-8).
std::string wellFormedUTF8(std::string_view bytes);

// The offset of the first part of `bytes` that is not well-formed; npos without one.
std::size_t firstIllFormedByte(std::string_view bytes);

bool isASCII(std::string_view bytes);

} // namespace tarnwick
