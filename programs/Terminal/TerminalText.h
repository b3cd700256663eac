// Text from outside, made fit for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text`, UTF-8, as one line: with a question mark for each control character (Unicode's Cc), line
// separator and mark that changes the direction of writing. Nothing in it moves the cursor or hides
// what stands beside it.
std::string terminalText(std::string_view text);

} // namespace tarnwick
