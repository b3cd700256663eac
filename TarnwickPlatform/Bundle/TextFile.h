// Reads whole files of text and checks UTF-8.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// Whether `bytes` are well-formed UTF-8 (The Unicode Standard, table 3-7): no overlong forms, no
// surrogates, nothing above U+10FFFF. False for more than 2 GiB.
bool isUTF8(std::string_view bytes);

// `text` without the byte order mark that some editors put before UTF-8 (The Unicode Standard,
// 23.8).
std::string withoutByteOrderMark(std::string text);

// The bytes of a regular file; absent if it is missing, cannot be read or is not a regular file.
// Blocks.
std::optional<std::string> fileBytes(const std::filesystem::path& file);

// The same without a byte order mark; absent if the bytes are not UTF-8. Blocks.
std::optional<std::string> fileText(const std::filesystem::path& file);

} // namespace tarnwick
