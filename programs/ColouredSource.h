// An episode's source in a terminal's colours.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// Whether standard output is a terminal that shows colours to somebody who wants them: NO_COLOR is
// unset or empty (no-color.org), and TERM is not "dumb".
bool showsColours();

// `text`, an episode's whole source in UTF-8, with escape sequences (ECMA-48, 8.3.117) around all
// that has a colour. Its own control characters, which could do more to a terminal, become "?".
std::string coloured(std::string_view text);

} // namespace tarnwick
