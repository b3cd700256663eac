// The text of an editor as bytes of UTF-8, which Scintilla counts too.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

class QsciScintilla;

namespace tarnwick::player {

std::string textOf(const QsciScintilla& editor);
std::size_t cursorByte(const QsciScintilla& editor);
// Replaces the bytes [begin, end), which are whole characters, as one change that can be undone.
// Returns the end of the new text.
std::size_t replaceBytes(QsciScintilla& editor, std::size_t begin, std::size_t end,
                         std::string_view text);
void setCursorByte(QsciScintilla& editor, std::size_t byte);

} // namespace tarnwick::player
