// Foreign text as a part of a sentence.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text` in quotation marks; control characters become question marks, and after 80 bytes "..."
// stands for the rest.
std::string quoted(std::string_view text);

} // namespace tarnwick
