// Foreign text, made safe for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text`, UTF-8, as one line: a question mark replaces each control character (Unicode's Cc), line
// separator and mark of writing direction. So it cannot move the cursor or hide other text.
std::string terminalText(std::string_view text);

} // namespace tarnwick
