#include "player/Editor/TextBytes.h"

#include <Qsci/qsciscintilla.h>

namespace tarnwick::player {

std::string textOf(const QsciScintilla& editor) {
    return editor.text().toStdString();
}

std::size_t cursorByte(const QsciScintilla& editor) {
    return static_cast<std::size_t>(editor.SendScintilla(QsciScintilla::SCI_GETCURRENTPOS));
}

std::size_t replaceBytes(QsciScintilla& editor, std::size_t begin, std::size_t end,
                         std::string_view text) {
    editor.beginUndoAction();
    editor.SendScintilla(QsciScintilla::SCI_SETTARGETRANGE, begin, static_cast<long>(end));
    editor.SendScintilla(QsciScintilla::SCI_REPLACETARGET, text.size(), text.data());
    editor.endUndoAction();
    return begin + text.size();
}

void setCursorByte(QsciScintilla& editor, std::size_t byte) {
    editor.SendScintilla(QsciScintilla::SCI_GOTOPOS, byte);
}

} // namespace tarnwick::player
