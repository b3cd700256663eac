// Foreign text, made safe for a terminal: it cannot move the cursor, change the terminal, or hide
// or reorder other text.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// `text`, UTF-8, as one line: a question mark replaces each control character (Unicode's Cc), line
// separator, mark of writing direction, and byte that is not UTF-8.
std::string terminalText(std::string_view text);

// The same for text of several lines: line feeds and tabs stay, CR LF becomes a line feed.
std::string terminalLines(std::string_view text);

// A JSON document without such characters: they are written as "\u009b". Its own line feeds stay.
std::string terminalJSON(std::string_view document);

} // namespace tarnwick
