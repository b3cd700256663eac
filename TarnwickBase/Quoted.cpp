#include "TarnwickBase/Quoted.h"

namespace tarnwick {

std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 80;
    std::string shown = "\"";
    for (const char character : text.substr(0, longest))
        shown +=
            static_cast<unsigned char>(character) < 0x20 || character == 0x7f ? '?' : character;
    return shown + (text.size() > longest ? "...\"" : "\"");
}

} // namespace tarnwick
