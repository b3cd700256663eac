#include "TarnwickCore/Text/UTF8.h"

#include <unicode/utf8.h>

#include <array>
#include <cstdint>

namespace tarnwick {
namespace {

void append(std::string& text, UChar32 character) {
    std::array<std::uint8_t, U8_MAX_LENGTH> units{};
    std::size_t count = 0;
    U8_APPEND_UNSAFE(units, count, character);
    text.append(units.begin(), units.begin() + count);
}

} // namespace

bool isASCII(std::string_view bytes) {
    // A loop without an exit is compiled to steps of 16 bytes.
    unsigned char all = 0;
    for (const char byte : bytes)
        all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

std::size_t firstIllFormedByte(std::string_view bytes) {
    const auto* const units = reinterpret_cast<const std::uint8_t*>(bytes.data());
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t start = at;
        UChar32 character = 0;
        U8_NEXT(units, at, bytes.size(), character);
        if (character < 0)
            return start;
    }
    return std::string_view::npos;
}

std::string wellFormedUTF8(std::string_view bytes) {
    if (isASCII(bytes))
        return std::string(bytes);
    std::string text;
    text.reserve(bytes.size());
    const auto* const units = reinterpret_cast<const std::uint8_t*>(bytes.data());
    for (std::size_t at = 0; at < bytes.size();) {
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(units, at, bytes.size(), character);
        append(text, character);
    }
    return text;
}

} // namespace tarnwick
