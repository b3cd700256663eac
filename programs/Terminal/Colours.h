// Whether output has colours.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

enum class Colours { none, ofTerminal };

// The colours of a stream, STDOUT_FILENO or STDERR_FILENO: `ofTerminal` if it is a terminal,
// NO_COLOR is unset or empty (no-color.org), and TERM is not "dumb".
Colours coloursOf(int descriptor);

// `text` with a Select Graphic Rendition of those parameters (ECMA-48, 8.3.117): "1;32".
std::string styled(std::string_view text, std::string_view parameters, Colours colours);

} // namespace tarnwick
