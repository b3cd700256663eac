// An episode's source in a terminal's colours.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text`, an episode's source in UTF-8, with escape sequences (ECMA-48, 8.3.117) around all tokens
// that have a colour. Its own control characters become "?" (terminalLines).
std::string coloured(std::string_view text);

} // namespace tarnwick
