#include "TarnwickWeb/Base64.h"

#include <cstdint>

namespace tarnwick {

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::string_view part = bytes.substr(at, 3);
        std::uint32_t bits = 0;
        for (std::size_t byte = 0; byte < 3; ++byte)
            bits = bits << 8 | (byte < part.size() ? static_cast<unsigned char>(part[byte]) : 0u);
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= part.size() ? digits[bits >> (18 - 6 * digit) & 63] : '=';
    }
    return text;
}

} // namespace tarnwick
