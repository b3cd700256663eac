#include "TarnwickRender/WalkthroughCode.h"

#include "TarnwickCore/MSLSyntax.h"
#include "TarnwickCore/UTF16.h"

#include <array>

namespace tarnwick {
namespace {

constexpr double contextPart = 0.42; // of the alpha of an added line's ink

constexpr Ink hex(std::uint32_t color) {
    return {(color >> 16) / 255.0, (color >> 8 & 0xff) / 255.0, (color & 0xff) / 255.0, 1};
}

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

// Columns are bytes here: exact for ASCII, which is all that code stands under.
std::string withoutTabs(const std::string& code) {
    std::string text;
    for (const char unit : code) {
        if (unit == '\t')
            text.append(4 - text.size() % 4, ' ');
        else
            text += unit;
    }
    return text;
}

} // namespace

TextBlock codeBlock(const WalkthroughLine& line) {
    const double part = line.kind == WalkthroughLine::Kind::added ? 1 : contextPart;
    TextBlock block{.text = withoutTabs(line.text),
                    .typeface = TextBlock::Typeface::code,
                    .ink = plainInk.faded(part)};
    UTF16Cursor cursor(block.text);
    for (const SyntaxToken& token : MSLSyntax::tokens(block.text)) {
        const std::size_t start = cursor.byteOf(token.range.location);
        const std::size_t end = cursor.byteOf(token.range.location + token.range.length);
        block.stretches.push_back({.start = start,
                                   .length = end - start,
                                   .ink = inks[static_cast<std::size_t>(token.kind)].faded(part)});
    }
    return block;
}

} // namespace tarnwick
