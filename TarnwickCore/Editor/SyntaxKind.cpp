#include "TarnwickCore/Editor/SyntaxKind.h"

#include <array>
#include <cstddef>

namespace tarnwick {

std::string_view rawValue(SyntaxKind kind) {
    constexpr std::array<std::string_view, 9> names{"comment", "header",       "headerKey",
                                                    "keyword", "type",         "number",
                                                    "string",  "preprocessor", "attribute"};
    static_assert(names.size() == static_cast<std::size_t>(SyntaxKind::attribute) + 1);
    return names[static_cast<std::size_t>(kind)];
}

} // namespace tarnwick
