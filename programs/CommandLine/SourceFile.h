// Text files that the command line names.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// The text of `path`, a regular file or a pipe, without a byte order mark. Throws CommandError,
// whose sentence names the path, if it is missing, a folder, longer than 8 MiB or not UTF-8; the
// place of the first invalid byte is printed before. Stops reading at the first of these.
std::string sourceText(std::string_view path);

// The same without the check of UTF-8, for callers that report invalid bytes themselves.
std::string sourceBytes(std::string_view path);

} // namespace tarnwick
