// Operations of the editor: colours, comments, indentation.
#include "TarnwickCore/Editor/CodeEdit.h"
#include "TarnwickCore/Editor/MSLSyntax.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

std::size_t end(TextRange range) {
    return range.location + range.length;
}

void checkTokens(std::string_view text, std::size_t length) {
    std::size_t reached = 0;
    SyntaxToken last;
    for (const SyntaxToken& token : MSLSyntax::tokens(text)) {
        law(token.range.length > 0 && end(token.range) <= length, "a token is within the text");
        const bool inside =
            token.kind == SyntaxKind::headerKey && end(token.range) <= end(last.range);
        law(inside || token.range.location >= reached, "tokens do not overlap");
        reached = std::max(reached, end(token.range));
        last = token;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Choices input(bytes, size);
    const std::size_t location = input.byte();
    const TextRange selection{location, input.byte()};
    const std::string text = input.rest();
    const std::size_t length = utf16Length(text);
    checkTokens(text, length);
    const CodeEdit::Replacement edit = CodeEdit::toggleLineComments(text, selection);
    law(end(edit.range) <= length, "a replacement is within the text");
    law(CodeEdit::indent(selection.location, text).find_first_not_of(" \t") == std::string::npos,
        "an indentation is blank");
    return 0;
}
