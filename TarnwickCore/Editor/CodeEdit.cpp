#include "TarnwickCore/Editor/CodeEdit.h"

#include "TarnwickCore/Text/UTF8.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace tarnwick {
namespace {

constexpr std::string_view marker = "//";

// The texts between newlines, one more than there are newlines.
std::vector<std::string_view> piecesOf(std::string_view text) {
    std::vector<std::string_view> pieces;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find('\n', start);
        pieces.push_back(text.substr(start, end - start));
        if (end == std::string_view::npos)
            return pieces;
        start = end + 1;
    }
}

std::size_t lineStart(std::string_view text, std::size_t byte) {
    const std::size_t before = byte > 0 ? text.rfind('\n', byte - 1) : std::string_view::npos;
    return before == std::string_view::npos ? 0 : before + 1;
}

// The position after its newline, if it has one.
std::size_t lineEnd(std::string_view text, std::size_t byte) {
    const std::size_t newline = text.find('\n', byte);
    return newline == std::string_view::npos ? text.size() : newline + 1;
}

std::string_view withoutLeadingWhitespace(std::string_view line) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(line.data());
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t start = at;
        UChar32 character = 0;
        U8_NEXT(bytes, at, line.size(), character);
        if (character < 0 || !u_isUWhiteSpace(character))
            return line.substr(start);
    }
    return {};
}

std::size_t indentOf(std::string_view line) {
    return std::min(line.find_first_not_of(" \t"), line.size());
}

bool isBlank(std::string_view line) {
    return withoutLeadingWhitespace(line).empty();
}

bool isComment(std::string_view line) {
    return withoutLeadingWhitespace(line).starts_with(marker);
}

std::size_t smallestIndent(const std::vector<std::string_view>& lines) {
    std::size_t smallest = std::numeric_limits<std::size_t>::max();
    for (const std::string_view line : lines)
        if (!isBlank(line))
            smallest = std::min(smallest, indentOf(line));
    return smallest;
}

std::string commented(std::string_view line, std::size_t column) {
    return wellFormedUTF8(line.substr(0, column)) + "// " + wellFormedUTF8(line.substr(column));
}

std::string bared(std::string_view line) {
    const std::size_t at = line.find(marker);
    std::string_view rest = line.substr(at + marker.size());
    if (rest.starts_with(' '))
        rest.remove_prefix(1);
    return wellFormedUTF8(line.substr(0, at)) + wellFormedUTF8(rest);
}

std::string toggled(std::string_view block) {
    const bool endsWithNewline = block.ends_with('\n');
    if (endsWithNewline)
        block.remove_suffix(1);
    const std::vector<std::string_view> lines = piecesOf(block);
    const bool areComments = std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
        return isBlank(line) || isComment(line);
    });
    const std::size_t column = smallestIndent(lines);
    std::string result;
    for (const std::string_view line : lines)
        result += (isBlank(line) ? wellFormedUTF8(line)
                   : areComments ? bared(line)
                                 : commented(line, column)) +
                  "\n";
    if (!endsWithNewline)
        result.pop_back();
    return result;
}

} // namespace

CodeEdit::Replacement CodeEdit::toggleLineComments(std::string_view text, TextRange selection) {
    const std::size_t room = std::numeric_limits<std::size_t>::max() - selection.location;
    UTF16Cursor cursor(text);
    const std::size_t first = cursor.byteOf(selection.location);
    const std::size_t last = cursor.byteOf(selection.location + std::min(selection.length, room));
    const std::size_t start = lineStart(text, first);
    const bool isWholeLines = last > first && text[last - 1] == '\n';
    const std::size_t end = isWholeLines ? last : lineEnd(text, last);
    const std::string_view block = text.substr(start, end - start);
    return {{.location = UTF16Cursor(text).unitOf(start), .length = utf16Length(block)},
            toggled(block)};
}

std::string CodeEdit::indent(std::size_t location, std::string_view text) {
    const std::string_view line = text.substr(lineStart(text, UTF16Cursor(text).byteOf(location)));
    return std::string(line.substr(0, indentOf(line)));
}

} // namespace tarnwick
