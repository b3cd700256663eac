#include "TarnwickRender/Walkthroughs/WalkthroughCode.h"

#include "TarnwickCore/Editor/MSLSyntax.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/UTF16.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tarnwick {
namespace {

using Kind = WalkthroughLine::Kind;

constexpr double contextPart = 0.42; // of the alpha of an added line's ink

constexpr Ink hex(std::uint32_t color) {
    return {(color >> 16) / 255.0, (color >> 8 & 0xff) / 255.0, (color & 0xff) / 255.0, 1};
}

constexpr std::size_t mostBytes = 512; // of a line, some seven lines of a page

// In the order of SyntaxKind.
constexpr std::array<Ink, 9> inks{
    hex(0x7d8799), // comment
    hex(0x8fa9c4), // header
    hex(0xffb86b), // headerKey
    hex(0xe892c8), // keyword
    hex(0x6fcbe8), // type
    hex(0xf2b675), // number
    hex(0xa8d58c), // string
    hex(0xbb9df0), // preprocessor
    hex(0x7fd1b9), // attribute
};

// Columns are bytes, which is exact for the ASCII text of code.
std::string shownText(std::string_view code) {
    const std::string_view shown = wholeCharacters(code, mostBytes);
    std::string text;
    for (const char unit : shown) {
        if (unit == '\t')
            text.append(4 - text.size() % 4, ' ');
        else
            text += unit;
    }
    return shown.size() < code.size() ? text + "…" : text;
}

// The common indentation of a page's lines, which have no tabs.
std::size_t sharedIndent(const std::vector<std::string>& texts, const WalkthroughPage& page) {
    std::size_t indent = std::string::npos;
    for (std::size_t at = 0; at < texts.size(); ++at)
        if (page.lines[at].kind == Kind::added || page.lines[at].kind == Kind::context)
            indent = std::min(indent, texts[at].find_first_not_of(' '));
    return indent == std::string::npos ? 0 : indent;
}

TextBlock codeBlock(std::string text, Kind kind) {
    const double part = kind == Kind::added ? 1 : contextPart;
    TextBlock block{.text = std::move(text),
                    .typeface = TextBlock::Typeface::code,
                    .ink = plainInk.faded(part)};
    UTF16Cursor cursor(block.text);
    for (const auto& [token, range] : MSLSyntax::tokens(block.text)) {
        const std::size_t start = cursor.byteOf(range.location);
        const std::size_t end = cursor.byteOf(range.location + range.length);
        block.stretches.push_back({.start = start,
                                   .length = end - start,
                                   .ink = inks[static_cast<std::size_t>(token)].faded(part)});
    }
    return block;
}

} // namespace

std::vector<TextBlock> codeBlocks(const WalkthroughPage& page) {
    std::vector<std::string> texts;
    for (const WalkthroughLine& line : page.lines)
        texts.push_back(shownText(line.text));
    const std::size_t indent = sharedIndent(texts, page);
    std::vector<TextBlock> blocks;
    for (std::size_t at = 0; at < texts.size(); ++at) {
        const Kind kind = page.lines[at].kind;
        const bool isCode = kind == Kind::added || kind == Kind::context;
        blocks.push_back(codeBlock(isCode ? texts[at].substr(indent) : texts[at], kind));
    }
    return blocks;
}

} // namespace tarnwick
