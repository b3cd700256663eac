#include "TarnwickCore/Findings/Encoding.h"

#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/UTF8.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tarnwick {

std::optional<Diagnostic> encodingError(std::string_view source) {
    const std::size_t at = std::min(firstIllFormedByte(source), source.find('\0'));
    if (at == std::string_view::npos)
        return std::nullopt;
    const bool isUTF16 = source.starts_with("\xff\xfe") || source.starts_with("\xfe\xff");
    std::array<char, 8> byte{};
    std::snprintf(byte.data(), byte.size(), "0x%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(source[at])));
    const auto [line, column] = placeOf(source, at);
    return Diagnostic{.severity = Severity::error,
                      .line = line,
                      .column = column,
                      .message = std::string("byte ") + byte.data() +
                                 (source[at] == '\0' ? " is not text" : " is not UTF-8") +
                                 (isUTF16 ? "; the file seems to be UTF-16: save it as UTF-8"
                                          : "; save the file as UTF-8")};
}

} // namespace tarnwick
