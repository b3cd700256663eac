// Files that the command line names.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// The text of `path`, a regular file or a pipe, without a byte order mark. Throws CommandError,
// whose sentence names the path, when it is missing, a folder, longer than 8 MiB or no UTF-8 text;
// the place of the first byte that is none has been printed then. No more is read than it takes to
// know.
std::string sourceText(std::string_view path);

// The same for those who report such bytes themselves, as findings of an episode.
std::string sourceBytes(std::string_view path);

} // namespace tarnwick
