// An episode's source in a terminal's colours.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text`, an episode's whole source in UTF-8, with escape sequences (ECMA-48, 8.3.117) around all
// that has a colour. Its own control characters, which could do more to a terminal, become "?".
std::string coloured(std::string_view text);

} // namespace tarnwick
