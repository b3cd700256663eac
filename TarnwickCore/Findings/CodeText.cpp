#include "TarnwickCore/Findings/CodeText.h"

#include "TarnwickCore/Editor/MSLSyntax.h"

#include <algorithm>

namespace tarnwick {

std::string codeText(std::string_view source) {
    std::string code(source);
    UTF16Cursor starts(source), ends(source);
    for (const auto& [kind, range] : MSLSyntax::tokens(source)) {
        if (kind != SyntaxKind::comment && kind != SyntaxKind::header && kind != SyntaxKind::string)
            continue;
        const auto start =
            code.begin() + static_cast<std::ptrdiff_t>(starts.byteOf(range.location));
        const auto end =
            code.begin() + static_cast<std::ptrdiff_t>(ends.byteOf(range.location + range.length));
        std::replace_if(
            start, end, [](char one) { return one != '\n' && one != '\r'; }, ' ');
    }
    return code;
}

} // namespace tarnwick
