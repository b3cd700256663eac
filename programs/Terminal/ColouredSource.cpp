#include "programs/Terminal/ColouredSource.h"

#include "TarnwickCore/Editor/MSLSyntax.h"
#include "TarnwickCore/Text/TerminalText.h"

namespace tarnwick {
namespace {

// Those of the terminal's sixteen colours that are readable on dark and on light.
std::string_view sequenceOf(SyntaxKind kind) {
    switch (kind) {
    case SyntaxKind::comment:
        return "\033[90m";
    case SyntaxKind::header:
        return "\033[36m";
    case SyntaxKind::headerKey:
        return "\033[1;36m";
    case SyntaxKind::keyword:
        return "\033[35m";
    case SyntaxKind::type:
        return "\033[34m";
    case SyntaxKind::number:
        return "\033[33m";
    case SyntaxKind::string:
        return "\033[32m";
    case SyntaxKind::preprocessor:
        return "\033[31m";
    case SyntaxKind::attribute:
        return "\033[95m";
    }
    return "";
}

} // namespace

std::string coloured(std::string_view text) {
    std::string result;
    std::size_t done = 0; // bytes
    auto goOnTo = [&](std::size_t end) {
        result += terminalLines(text.substr(done, end - done));
        done = end;
    };
    const std::vector<SyntaxToken> tokens = MSLSyntax::tokens(text);
    UTF16Cursor cursor(text);
    for (std::size_t index = 0; index < tokens.size(); ++index) {
        const auto& [kind, range] = tokens[index];
        goOnTo(cursor.byteOf(range.location));
        result += sequenceOf(kind);
        // A header's key is inside the header, whose colour continues after the key.
        if (kind == SyntaxKind::header) {
            const auto& [keyKind, key] = tokens[++index];
            goOnTo(cursor.byteOf(key.location));
            result += sequenceOf(keyKind);
            goOnTo(cursor.byteOf(key.location + key.length));
            result += "\033[0m" + std::string(sequenceOf(kind));
        }
        goOnTo(cursor.byteOf(range.location + range.length));
        result += "\033[0m";
    }
    goOnTo(text.size());
    return result;
}

} // namespace tarnwick
