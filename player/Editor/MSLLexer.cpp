#include "player/Editor/MSLLexer.h"

#include "TarnwickCore/Editor/MSLSyntax.h"

#include <Qsci/qsciscintilla.h>

#include <QFontDatabase>
#include <array>
#include <string>

namespace tarnwick::player {
namespace {

struct StyleRow {
    const char* name;
    QRgb onLight, onDark;
    bool isBold = false, isItalic = false;
};

// Style 0 is text without a kind; style n + 1 is that of SyntaxKind n.
constexpr std::array<StyleRow, 10> rows{{
    {"text", 0xff1f2328, 0xffd9dde3},
    {"comment", 0xff6e7781, 0xff8b949e, false, true},
    {"header", 0xff0a6b5e, 0xff63c7b2},
    {"headerKey", 0xff0a6b5e, 0xff63c7b2, true},
    {"keyword", 0xff9a2a70, 0xfff08cc0, true},
    {"type", 0xff0f5ea8, 0xff7cb8ff},
    {"number", 0xffa14a00, 0xffffb066},
    {"string", 0xff1f7a1f, 0xff8ed18e},
    {"preprocessor", 0xff7a5a00, 0xffd8bd6a},
    {"attribute", 0xff6a3fb5, 0xffbca4ff},
}};

const StyleRow& rowOf(int style) {
    return rows.at(style >= 0 && static_cast<std::size_t>(style) < rows.size()
                       ? static_cast<std::size_t>(style)
                       : 0);
}

// The byte at which each UTF-16 code unit of valid UTF-8 begins, and the end.
std::vector<std::size_t> bytesOfUnits(std::string_view text) {
    std::vector<std::size_t> bytes;
    bytes.reserve(text.size() + 1);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if ((byte & 0xC0) == 0x80)
            continue;
        bytes.push_back(at);
        if (byte >= 0xF0) // two code units
            bytes.push_back(at);
    }
    bytes.push_back(text.size());
    return bytes;
}

std::vector<char> stylesOf(std::string_view text) {
    std::vector<char> styles(text.size(), 0);
    const std::vector<std::size_t> bytes = bytesOfUnits(text);
    for (const SyntaxToken& token : MSLSyntax::tokens(text)) {
        const std::size_t last = bytes.size() - 1;
        const std::size_t begin = bytes[std::min(token.range.location, last)];
        const std::size_t end = bytes[std::min(token.range.location + token.range.length, last)];
        std::fill(styles.begin() + static_cast<std::ptrdiff_t>(begin),
                  styles.begin() + static_cast<std::ptrdiff_t>(end),
                  static_cast<char>(static_cast<int>(token.kind) + 1));
    }
    return styles;
}

} // namespace

MSLLexer::MSLLexer(QObject* parent) : QsciLexerCustom(parent) {
    setDark(false);
}

void MSLLexer::setDark(bool isDark) {
    isDark_ = isDark;
    setDefaultColor(defaultColor(0));
    setDefaultPaper(defaultPaper(0));
    for (int style = 0; style < static_cast<int>(rows.size()); ++style) {
        setColor(defaultColor(style), style);
        setPaper(defaultPaper(style), style);
        setFont(defaultFont(style), style);
    }
}

QString MSLLexer::description(int style) const {
    return static_cast<std::size_t>(style) < rows.size() ? QString(rowOf(style).name) : QString();
}

QColor MSLLexer::defaultColor(int style) const {
    return QColor::fromRgb(isDark_ ? rowOf(style).onDark : rowOf(style).onLight);
}

QColor MSLLexer::defaultPaper(int) const {
    return QColor::fromRgb(isDark_ ? 0xff15181d : 0xfffdfdfc);
}

QFont MSLLexer::defaultFont(int style) const {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(11);
    font.setBold(rowOf(style).isBold);
    font.setItalic(rowOf(style).isItalic);
    return font;
}

const char* MSLLexer::wordCharacters() const {
    return "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
}

const char* MSLLexer::blockStart(int* style) const {
    if (style != nullptr)
        *style = 0;
    return "{";
}

const char* MSLLexer::blockEnd(int* style) const {
    if (style != nullptr)
        *style = 0;
    return "}";
}

// The whole text is divided again: an episode takes less than a millisecond, and a comment that
// opens changes all lines after it.
void MSLLexer::styleText(int, int) {
    if (editor() == nullptr)
        return;
    const auto length =
        static_cast<std::size_t>(editor()->SendScintilla(QsciScintilla::SCI_GETLENGTH));
    std::string text(length + 1, '\0');
    editor()->SendScintilla(QsciScintilla::SCI_GETTEXT, length + 1, text.data());
    text.resize(length);
    const std::vector<char> styles = stylesOf(text);
    startStyling(0);
    for (std::size_t begin = 0; begin < length;) {
        std::size_t end = begin + 1;
        while (end < length && styles[end] == styles[begin])
            ++end;
        setStyling(static_cast<int>(end - begin), styles[begin]);
        begin = end;
    }
    fold(text, styles);
}

// Lines fold by braces outside of comments and strings.
void MSLLexer::fold(std::string_view text, const std::vector<char>& styles) {
    int level = QsciScintilla::SC_FOLDLEVELBASE, line = 0, next = level;
    const auto endLine = [&] {
        const int flag = next > level ? QsciScintilla::SC_FOLDLEVELHEADERFLAG : 0;
        editor()->SendScintilla(QsciScintilla::SCI_SETFOLDLEVEL, line, level | flag);
        ++line;
        level = next;
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (styles[at] == 0 && text[at] == '{')
            ++next;
        else if (styles[at] == 0 && text[at] == '}')
            next = std::max<int>(next - 1, QsciScintilla::SC_FOLDLEVELBASE);
        else if (text[at] == '\n')
            endLine();
    }
    endLine();
}

} // namespace tarnwick::player
