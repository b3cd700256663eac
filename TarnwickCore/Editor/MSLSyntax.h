// Divides an episode's source into coloured tokens in one pass, for editors and printed pages.
#pragma once

#include "TarnwickCore/Editor/SyntaxKind.h"
#include "TarnwickCore/Text/UTF16.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tarnwick {

struct SyntaxToken {
    SyntaxKind kind = SyntaxKind::comment;
    TextRange range;

    bool operator==(const SyntaxToken&) const = default;
};

// Pure; accepts any bytes; never fails. May be called from any thread.
struct MSLSyntax {
    using Words = std::unordered_set<std::string>;

    static const Words& keywords(); // of the language
    static const Words& types();    // of the language and of episodes, such as Uniforms

    // The coloured tokens, ordered by their beginning. Operators, punctuation and the names of the
    // author have no colour. A newline is a line feed; a carriage return before it belongs to the
    // comment or preprocessor line that it ends. Letters and digits are ASCII. Invalid UTF-8 is
    // counted as U+FFFD, as UTF16Cursor does.
    static std::vector<SyntaxToken> tokens(std::string_view text);
};

} // namespace tarnwick
