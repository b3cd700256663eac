#include "TarnwickCore/Text/TerminalText.h"

#include <unicode/utf8.h>

#include <array>
#include <cstdint>
#include <cstdio>

namespace tarnwick {
namespace {

bool isUnfit(UChar32 character) {
    return character < 0x20 || (character >= 0x7f && character < 0xa0) || character == 0x61c ||
           character == 0x200e || character == 0x200f ||
           (character >= 0x2028 && character <= 0x202e) ||
           (character >= 0x2066 && character <= 0x2069);
}

// `replaced` gives the text for an unfit character and the text that begins with it.
template <class Replaced>
std::string withoutUnfit(std::string_view text, const Replaced& replaced) {
    const auto* const units = reinterpret_cast<const std::uint8_t*>(text.data());
    std::string fit;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        UChar32 character = 0;
        U8_NEXT(units, at, text.size(), character);
        if (character < 0)
            fit += '?';
        else if (isUnfit(character))
            fit += replaced(character, text.substr(start));
        else
            fit += text.substr(start, at - start);
    }
    return fit;
}

} // namespace

std::string terminalText(std::string_view text) {
    return withoutUnfit(text, [](UChar32, std::string_view) { return "?"; });
}

std::string terminalLines(std::string_view text) {
    return withoutUnfit(text, [](UChar32 value, std::string_view from) {
        return value == '\n' || value == '\t' ? std::string(1, static_cast<char>(value))
               : value == '\r' && from.starts_with("\r\n") ? ""
                                                           : "?";
    });
}

std::string terminalJSON(std::string_view document) {
    return withoutUnfit(document, [](UChar32 value, std::string_view) {
        if (value == '\n')
            return std::string("\n");
        std::array<char, 12> escaped{};
        std::snprintf(escaped.data(), escaped.size(), "\\u%04x", static_cast<unsigned>(value));
        return std::string(escaped.data());
    });
}

} // namespace tarnwick
