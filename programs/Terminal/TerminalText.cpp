#include "programs/Terminal/TerminalText.h"

#include <array>

namespace tarnwick {
namespace {

// The length in bytes of a character at the start of `text` that is replaced; 0 if none.
std::size_t unfitLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x20 || first == 0x7f)
        return 1;
    if (first == 0xc2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xa0)
        return 2; // U+0080 to U+009F
    // U+061C, U+200E to U+200F, U+2028 to U+202E, U+2066 to U+2069
    constexpr std::array<std::string_view, 14> marks{
        "\xd8\x9c",     "\xe2\x80\x8e", "\xe2\x80\x8f", "\xe2\x80\xa8", "\xe2\x80\xa9",
        "\xe2\x80\xaa", "\xe2\x80\xab", "\xe2\x80\xac", "\xe2\x80\xad", "\xe2\x80\xae",
        "\xe2\x81\xa6", "\xe2\x81\xa7", "\xe2\x81\xa8", "\xe2\x81\xa9"};
    for (const std::string_view mark : marks)
        if (text.starts_with(mark))
            return mark.size();
    return 0;
}

} // namespace

std::string terminalText(std::string_view text) {
    std::string fit;
    while (!text.empty()) {
        const std::size_t unfit = unfitLength(text);
        fit += unfit > 0 ? '?' : text[0];
        text.remove_prefix(unfit > 0 ? unfit : 1);
    }
    return fit;
}

} // namespace tarnwick
