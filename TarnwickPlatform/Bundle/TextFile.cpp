#include "TarnwickPlatform/Bundle/TextFile.h"

#include <unicode/ustring.h>

#include <fstream>
#include <iterator>
#include <limits>

namespace tarnwick {

bool isUTF8(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<std::int32_t>::max())
        return false;
    // Only measures: without room for a result, well-formed text gives an overflow error.
    UErrorCode outcome = U_ZERO_ERROR;
    std::int32_t units = 0;
    u_strFromUTF8(nullptr, 0, &units, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                  &outcome);
    return U_SUCCESS(outcome) || outcome == U_BUFFER_OVERFLOW_ERROR;
}

std::string withoutByteOrderMark(std::string text) {
    constexpr std::string_view mark = "\xef\xbb\xbf";
    if (text.starts_with(mark))
        text.erase(0, mark.size());
    return text;
}

std::optional<std::string> fileBytes(const std::filesystem::path& file) {
    std::error_code failure;
    if (!std::filesystem::is_regular_file(file, failure))
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        return std::nullopt;
    return bytes;
}

std::optional<std::string> fileText(const std::filesystem::path& file) {
    std::optional<std::string> bytes = fileBytes(file);
    if (bytes && !isUTF8(*bytes))
        return std::nullopt;
    return bytes ? std::optional(withoutByteOrderMark(*std::move(bytes))) : std::nullopt;
}

} // namespace tarnwick
