#include "TarnwickServe/AccessToken.h"

#include "TarnwickServe/ServeError.h"

#include <sys/random.h>

#include <array>
#include <cstdint>

namespace tarnwick {

AccessToken AccessToken::make() {
    constexpr std::string_view digits = "0123456789abcdefghjkmnpqrstvwxyz";
    constexpr std::size_t length = 26; // of 5 bits each, 130 in all
    std::array<std::uint8_t, length> random{};
    if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size()))
        throw ServeError("The system gives no random numbers for the token of the link.");
    std::string text;
    for (const std::uint8_t each : random)
        text += digits[each % digits.size()];
    return AccessToken(std::move(text));
}

bool AccessToken::equals(std::string_view text) const {
    if (text.size() != text_.size())
        return false;
    unsigned char difference = 0;
    for (std::size_t at = 0; at < text.size(); ++at)
        difference = static_cast<unsigned char>(difference | (text[at] ^ text_[at]));
    // The compiler must not end the loop at the first difference.
    const volatile unsigned char result = difference;
    return result == 0;
}

} // namespace tarnwick
