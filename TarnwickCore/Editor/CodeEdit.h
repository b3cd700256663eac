// What the editor's commands do to text, as replacements that it applies and can undo.
#pragma once

#include "TarnwickCore/Text/UTF16.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// Pure; any bytes are taken; nothing fails. May be called from any thread. Places are in UTF-16
// code units, and those behind the text stand for its end. A line ends with a line feed; a carriage
// return before it stays where it is. What is not UTF-8 is counted, and comes back, as U+FFFD.
struct CodeEdit {
    struct Replacement {
        TextRange range; // of the text as it was
        std::string replacement;

        bool operator==(const Replacement&) const = default;
    };

    // Every line that `selection` touches, commented in one column, or bared where all of them are
    // comments; blank ones stay. A selection that ends with a newline does not touch the line
    // behind it, a caret touches its own.
    static Replacement toggleLineComments(std::string_view text, TextRange selection);

    // The spaces and tabs that begin the line of `location`.
    static std::string indent(std::size_t location, std::string_view text);
};

} // namespace tarnwick
