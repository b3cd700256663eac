// Text that came from outside, made well-formed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// `bytes` as UTF-8 text: each part that is not well-formed becomes one U+FFFD, the longest part
// that could have begun a character counting as one (The Unicode Standard, 3.9, table 3-8).
std::string wellFormedUTF8(std::string_view bytes);

// Where the first part of `bytes` that is not well-formed begins; npos where all is.
std::size_t firstIllFormedByte(std::string_view bytes);

bool isASCII(std::string_view bytes);

} // namespace tarnwick
