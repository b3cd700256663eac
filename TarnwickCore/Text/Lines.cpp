#include "TarnwickCore/Text/Lines.h"

namespace tarnwick {

std::size_t lineBreakLength(std::string_view text, std::size_t at) {
    auto byte = [&](std::size_t offset) {
        return at + offset < text.size() ? static_cast<unsigned char>(text[at + offset]) : 0u;
    };
    switch (byte(0)) {
    case 0x0a:
    case 0x0b:
    case 0x0c:
        return 1;
    case 0x0d:
        return byte(1) == 0x0a ? 2 : 1;
    case 0xc2:
        return byte(1) == 0x85 ? 2 : 0;
    case 0xe2:
        return byte(1) == 0x80 && (byte(2) == 0xa8 || byte(2) == 0xa9) ? 3 : 0;
    default:
        return 0;
    }
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = lineBreakLength(text, at);
        if (length == 0) {
            ++at;
            continue;
        }
        if (at > start)
            lines.push_back(text.substr(start, at - start));
        at += length;
        start = at;
    }
    if (start < text.size())
        lines.push_back(text.substr(start));
    return lines;
}

std::vector<std::string_view> compilerLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\n' && text[at] != '\r')
            continue;
        lines.push_back(text.substr(start, at - start));
        at += text.substr(at).starts_with("\r\n") ? 1 : 0;
        start = at + 1;
    }
    lines.push_back(text.substr(start));
    return lines;
}

TextPlace placeOf(std::string_view text, std::size_t offset) {
    const std::vector<std::string_view> lines = compilerLines(text.substr(0, offset));
    return {.line = static_cast<std::int64_t>(lines.size()),
            .column = static_cast<std::int64_t>(lines.back().size()) + 1};
}

} // namespace tarnwick
