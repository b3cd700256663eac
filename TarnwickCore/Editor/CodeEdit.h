// Commands of the editor, as replacements that it applies and can undo.
#pragma once

#include "TarnwickCore/Text/UTF16.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// Pure; accepts any bytes; never fails. May be called from any thread. Positions are in UTF-16 code
// units; positions after the text count as its end. A line ends with a line feed; a carriage return
// before it is kept. Invalid UTF-8 is counted and returned as U+FFFD.
struct CodeEdit {
    struct Replacement {
        TextRange range; // of the text before the edit
        std::string replacement;

        bool operator==(const Replacement&) const = default;
    };

    // Comments every line that `selection` touches, in one column, or uncomments them if all are
    // comments. Blank lines are unchanged. A selection that ends with a newline does not touch the
    // line after it; an empty selection touches its own line.
    static Replacement toggleLineComments(std::string_view text, TextRange selection);

    // The spaces and tabs that begin the line of `location`.
    static std::string indent(std::size_t location, std::string_view text);
};

} // namespace tarnwick
