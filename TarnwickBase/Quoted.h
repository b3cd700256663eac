// Outside text as a part of a sentence.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text` in quotation marks. Control characters are replaced by question marks. Bytes after the
// first 80 are replaced by "...".
std::string quoted(std::string_view text);

} // namespace tarnwick
