#include "player/Editor/EpisodeEditor.h"

#include "TarnwickCore/Editor/CodeEdit.h"
#include "player/Editor/MSLLexer.h"
#include "player/Editor/TextBytes.h"
#include "player/Editor/WritingAid.h"

#include <Qsci/qscicommandset.h>

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <algorithm>

namespace tarnwick::player {
namespace {

enum Margin { numberMargin = 0, markMargin = 1, foldMargin = 2 };
enum Mark { errorMark = 1, warningMark = 2 };
enum Underline { errorUnderline = 8, warningUnderline = 9 };

constexpr int columnsOfTab = 4; // columns

// What differs between two texts, in bytes at the beginnings of characters.
struct ChangedPart {
    std::size_t begin = 0, oldEnd = 0, newEnd = 0;
};

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

ChangedPart changedPart(const std::string& before, const std::string& after) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t begin = 0, end = 0;
    while (begin < shorter && before[begin] == after[begin])
        ++begin;
    while (begin > 0 && begin < before.size() && continuesCharacter(before[begin]))
        --begin;
    while (begin > 0 && begin < after.size() && continuesCharacter(after[begin]))
        --begin;
    while (end < shorter - begin &&
           before[before.size() - 1 - end] == after[after.size() - 1 - end])
        ++end;
    while (end > 0 && (continuesCharacter(before[before.size() - end]) ||
                       continuesCharacter(after[after.size() - end])))
        --end;
    return {begin, before.size() - end, after.size() - end};
}

} // namespace

EpisodeEditor::EpisodeEditor(QWidget* parent) : QsciScintilla(parent), lexer_(new MSLLexer(this)) {
    setUtf8(true);
    setLayoutDirection(Qt::LeftToRight); // of programs, in every language of the window
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
    // The window has other uses for the keys of these commands, such as Ctrl+/.
    for (const auto command : {QsciCommand::WordPartLeft, QsciCommand::WordPartLeftExtend,
                               QsciCommand::WordPartRight, QsciCommand::WordPartRightExtend})
        standardCommands()->find(command)->setKey(0);
    standardCommands()
        ->find(QsciCommand::Redo)
        ->setAlternateKey(static_cast<int>(Qt::CTRL) | static_cast<int>(Qt::SHIFT) | Qt::Key_Z);
    setAccessibleName(tr("Episode text"));
    aid_ = new WritingAid(*this, [this](int at) { return messageAt(at); });
    setDark(palette().color(QPalette::Base).lightness() < 128);
    connect(this, &QsciScintilla::textChanged, this, [this] {
        if (!isReplacing_)
            emit edited();
    });
}

std::string EpisodeEditor::episodeText() const {
    return textOf(*this);
}

void EpisodeEditor::setEpisodeText(const std::string& text) {
    const std::string before = episodeText();
    if (text == before)
        return;
    isReplacing_ = true;
    if (before.empty() && !isUndoAvailable()) {
        setText(QString::fromStdString(text));
        SendScintilla(SCI_EMPTYUNDOBUFFER);
    } else {
        const ChangedPart part = changedPart(before, text);
        replaceBytes(*this, part.begin, part.oldEnd,
                     std::string_view(text).substr(part.begin, part.newEnd - part.begin));
    }
    setEolMode(text.find("\r\n") != std::string::npos ? EolWindows : EolUnix);
    isReplacing_ = false;
}

void EpisodeEditor::complete() {
    aid_->complete();
}

void EpisodeEditor::showFunction() {
    aid_->showFunction();
}

void EpisodeEditor::setFindings(const std::vector<Finding>& findings) {
    markerDeleteAll(errorMark);
    markerDeleteAll(warningMark);
    clearIndicatorRange(0, 0, lines(), 0, errorUnderline);
    clearIndicatorRange(0, 0, lines(), 0, warningUnderline);
    findings_.clear();
    for (const Finding& finding : findings)
        if (finding.diagnostic.severity != Severity::note && finding.diagnostic.line > 0 &&
            finding.diagnostic.line <= lines()) {
            findings_.push_back(finding);
            underline(finding);
        }
}

// The character of a line at a column, which counts bytes from 1.
int EpisodeEditor::indexOf(int line, std::int64_t column) const {
    const QByteArray bytes = text(line).toUtf8();
    const auto before = std::clamp<qsizetype>(static_cast<qsizetype>(column) - 1, 0, bytes.size());
    return static_cast<int>(QString::fromUtf8(bytes.left(before)).size());
}

// Underlines the word at the place of the finding, or one character.
void EpisodeEditor::underline(const Finding& finding) {
    const bool isError = finding.diagnostic.severity == Severity::error;
    const int line = static_cast<int>(finding.diagnostic.line) - 1;
    markerAdd(line, isError ? errorMark : warningMark);
    const QString content = text(line);
    const int begin = indexOf(line, finding.diagnostic.column);
    int end = begin;
    while (end < content.size() && (content[end].isLetterOrNumber() || content[end] == u'_'))
        ++end;
    if (end == begin)
        end = std::min(begin + 1, static_cast<int>(content.size()));
    fillIndicatorRange(line, begin, line, end, isError ? errorUnderline : warningUnderline);
}

QString EpisodeEditor::messageAt(int at) const {
    const auto isUnder = [&](unsigned long indicator) {
        return SendScintilla(SCI_INDICATORVALUEAT, indicator, static_cast<long>(at)) != 0;
    };
    const bool isError = isUnder(errorUnderline);
    if (!isError && !isUnder(warningUnderline))
        return {};
    const auto line = SendScintilla(SCI_LINEFROMPOSITION, static_cast<unsigned long>(at)) + 1;
    for (const Finding& finding : findings_)
        if (finding.diagnostic.line == line &&
            (finding.diagnostic.severity == Severity::error) == isError)
            return QString::fromStdString(finding.diagnostic.message +
                                          (finding.hint.empty() ? "" : "\n" + finding.hint));
    return {};
}

// The first one after the line of the cursor, or the first of all.
void EpisodeEditor::goToNextProblem() {
    int line = 0, column = 0;
    getCursorPosition(&line, &column);
    const Diagnostic* target = nullptr;
    for (const Finding& finding : findings_)
        if (finding.diagnostic.line > line + 1 &&
            (target == nullptr || finding.diagnostic.line < target->line))
            target = &finding.diagnostic;
    if (target == nullptr && !findings_.empty())
        target = &findings_.front().diagnostic;
    if (target != nullptr)
        goTo(static_cast<int>(target->line), static_cast<int>(target->column));
}

void EpisodeEditor::goTo(int line, int column) {
    const int row = std::clamp(line - 1, 0, lines() - 1);
    ensureLineVisible(row);
    SendScintilla(SCI_SETXOFFSET, 0); // scrolls sideways only as far as the place needs
    setCursorPosition(row, indexOf(row, column));
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
        return static_cast<std::size_t>(whole.left(static_cast<qsizetype>(units)).toUtf8().size());
    };
    // Only what differs, so that the cursor stays.
    const std::size_t from = bytesAt(edit.range.location);
    const std::size_t to = bytesAt(edit.range.location + edit.range.length);
    const ChangedPart part = changedPart(text.substr(from, to - from), edit.replacement);
    replaceBytes(*this, from + part.begin, from + part.oldEnd,
                 std::string_view(edit.replacement).substr(part.begin, part.newEnd - part.begin));
}

// On a line of its own a closing brace has the indentation of the line with the opening one.
void EpisodeEditor::typeClosingBrace() {
    int line = 0, column = 0;
    getCursorPosition(&line, &column);
    const QString before = text(line).left(column);
    if (before.trimmed().isEmpty() && before.endsWith(QString(columnsOfTab, u' '))) {
        const std::size_t at = cursorByte(*this);
        replaceBytes(*this, at - columnsOfTab, at, "");
    }
}

// A new line begins with the indentation of its line, and one level more after an opening brace.
void EpisodeEditor::keyPressEvent(QKeyEvent* event) {
    if (aid_->takesKey(event))
        return;
    if (event->text() == QStringLiteral("}"))
        typeClosingBrace();
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

// Files are left to the parts of the window that open them.
void EpisodeEditor::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->ignore();
    else
        QsciScintilla::dragEnterEvent(event);
}

} // namespace tarnwick::player
