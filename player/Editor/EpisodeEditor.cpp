#include "player/Editor/EpisodeEditor.h"

#include "TarnwickCore/Editor/CodeEdit.h"
#include "player/Editor/MSLLexer.h"

#include <QKeyEvent>
#include <algorithm>

namespace tarnwick::player {
namespace {

enum Margin { numberMargin = 0, markMargin = 1, foldMargin = 2 };
enum Mark { errorMark = 1, warningMark = 2 };
enum Underline { errorUnderline = 8, warningUnderline = 9 };

constexpr int columnsOfTab = 4; // columns

} // namespace

EpisodeEditor::EpisodeEditor(QWidget* parent) : QsciScintilla(parent), lexer_(new MSLLexer(this)) {
    setUtf8(true);
    setLexer(lexer_);
    setIndentationsUseTabs(false);
    setTabWidth(columnsOfTab);
    setBraceMatching(SloppyBraceMatch);
    setFolding(PlainFoldStyle, foldMargin);
    setMarginLineNumbers(numberMargin, true);
    setMarginWidth(numberMargin, QStringLiteral("00000"));
    setMarginType(markMargin, SymbolMargin);
    setMarginWidth(markMargin, 14);
    setMarginMarkerMask(markMargin, 1 << errorMark | 1 << warningMark);
    markerDefine(Circle, errorMark);
    markerDefine(Circle, warningMark);
    indicatorDefine(SquiggleIndicator, errorUnderline);
    indicatorDefine(SquiggleIndicator, warningUnderline);
    setCaretLineVisible(true);
    setScrollWidth(1);
    setScrollWidthTracking(true);
    setAccessibleName(tr("Episode text"));
    setDark(palette().color(QPalette::Base).lightness() < 128);
    connect(this, &QsciScintilla::textChanged, this, [this] {
        if (!isReplacing_)
            emit edited();
    });
}

std::string EpisodeEditor::episodeText() const {
    return text().toStdString();
}

void EpisodeEditor::setEpisodeText(const std::string& text) {
    const QString replacement = QString::fromStdString(text);
    if (replacement == this->text())
        return;
    isReplacing_ = true;
    const bool isFirst = length() == 0 && !isUndoAvailable();
    int line = 0, column = 0;
    getCursorPosition(&line, &column);
    if (isFirst) {
        setText(replacement);
        SendScintilla(SCI_EMPTYUNDOBUFFER);
    } else {
        beginUndoAction();
        selectAll();
        replaceSelectedText(replacement);
        endUndoAction();
        setCursorPosition(std::min(line, lines() - 1), column);
    }
    setEolMode(replacement.contains(QStringLiteral("\r\n")) ? EolWindows : EolUnix);
    isReplacing_ = false;
}

void EpisodeEditor::setFindings(const std::vector<Finding>& findings) {
    markerDeleteAll(errorMark);
    markerDeleteAll(warningMark);
    clearIndicatorRange(0, 0, lines(), 0, errorUnderline);
    clearIndicatorRange(0, 0, lines(), 0, warningUnderline);
    clearAnnotations();
    for (const Finding& finding : findings)
        if (finding.diagnostic.severity != Severity::note && finding.diagnostic.line > 0)
            underline(finding);
}

// Underlines the word at the place of the finding, or the rest of the line.
void EpisodeEditor::underline(const Finding& finding) {
    const bool isError = finding.diagnostic.severity == Severity::error;
    const int line = static_cast<int>(finding.diagnostic.line) - 1;
    if (line >= lines())
        return;
    markerAdd(line, isError ? errorMark : warningMark);
    const QString content = text(line);
    const QByteArray bytes = content.toUtf8();
    const auto column = std::clamp<qsizetype>(static_cast<qsizetype>(finding.diagnostic.column) - 1,
                                              0, bytes.size());
    const int begin = static_cast<int>(QString::fromUtf8(bytes.left(column)).size());
    int end = begin;
    while (end < content.size() && (content[end].isLetterOrNumber() || content[end] == u'_'))
        ++end;
    if (end == begin)
        end = std::min(begin + 1, static_cast<int>(content.size()));
    fillIndicatorRange(line, begin, line, end, isError ? errorUnderline : warningUnderline);
}

void EpisodeEditor::goTo(int line, int column) {
    setCursorPosition(std::max(line - 1, 0), std::max(column - 1, 0));
    ensureLineVisible(std::max(line - 1, 0));
    setFocus();
}

void EpisodeEditor::setDark(bool isDark) {
    lexer_->setDark(isDark);
    const QColor paper = lexer_->defaultPaper(0);
    setCaretForegroundColor(lexer_->defaultColor(0));
    setCaretLineBackgroundColor(isDark ? paper.lighter(130) : paper.darker(104));

    setMarginsBackgroundColor(isDark ? paper.lighter(115) : paper.darker(103));
    setMarginsForegroundColor(isDark ? QColor(120, 128, 140) : QColor(140, 140, 140));
    const QColor margin = isDark ? paper.lighter(115) : paper.darker(103);
    setFoldMarginColors(margin, margin);
    setMatchedBraceBackgroundColor(isDark ? QColor(60, 80, 110) : QColor(205, 225, 255));
    setMatchedBraceForegroundColor(lexer_->defaultColor(0));
    const QColor error(214, 60, 60), warning(196, 140, 20);
    setMarkerBackgroundColor(error, errorMark);
    setMarkerForegroundColor(error, errorMark);
    setMarkerBackgroundColor(warning, warningMark);
    setMarkerForegroundColor(warning, warningMark);
    setIndicatorForegroundColor(error, errorUnderline);
    setIndicatorForegroundColor(warning, warningUnderline);
}

void EpisodeEditor::toggleComments() {
    const std::string text = episodeText();
    const QString whole = this->text();
    int fromLine = 0, fromColumn = 0, toLine = 0, toColumn = 0;
    getSelection(&fromLine, &fromColumn, &toLine, &toColumn);
    if (!hasSelectedText()) {
        getCursorPosition(&fromLine, &fromColumn);
        toLine = fromLine;
        toColumn = fromColumn;
    }
    // Positions in UTF-16 code units, as CodeEdit counts them.
    const auto unitsAt = [&](int line, int column) {
        const int bytes = positionFromLineIndex(line, column);
        return static_cast<std::size_t>(
            QString::fromUtf8(text.data(), static_cast<qsizetype>(bytes)).size());
    };
    const std::size_t begin = unitsAt(fromLine, fromColumn), end = unitsAt(toLine, toColumn);
    const CodeEdit::Replacement edit =
        CodeEdit::toggleLineComments(text, {.location = begin, .length = end - begin});
    const auto bytesAt = [&](std::size_t units) {
        return static_cast<int>(whole.left(static_cast<qsizetype>(units)).toUtf8().size());
    };
    beginUndoAction();
    SendScintilla(SCI_SETTARGETRANGE, static_cast<unsigned long>(bytesAt(edit.range.location)),
                  static_cast<long>(bytesAt(edit.range.location + edit.range.length)));
    SendScintilla(SCI_REPLACETARGET, edit.replacement.size(), edit.replacement.data());
    endUndoAction();
}

// A new line begins with the indentation of its line, and one level more after an opening brace.
void EpisodeEditor::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || event->modifiers() != Qt::NoModifier || isListActive()) {
        QsciScintilla::keyPressEvent(event);
        return;
    }
    int line = 0, column = 0;
    getCursorPosition(&line, &column);
    const QString before = text(line).left(column);
    QString indent = QString::fromStdString(CodeEdit::indent(0, before.toStdString()));
    if (before.trimmed().endsWith(u'{'))
        indent += QString(columnsOfTab, u' ');
    QsciScintilla::keyPressEvent(event);
    insert(indent);
    setCursorPosition(line + 1, static_cast<int>(indent.size()));
}

void EpisodeEditor::changeEvent(QEvent* event) {
    QsciScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setDark(palette().color(QPalette::Base).lightness() < 128);
}

} // namespace tarnwick::player
