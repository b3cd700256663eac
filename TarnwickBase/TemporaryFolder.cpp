#include "TarnwickBase/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

namespace tarnwick {

TemporaryFolder::TemporaryFolder() {
    std::error_code error;
    std::string pattern =
        (std::filesystem::temp_directory_path(error) / "tarnwick-XXXXXX").string();
    if (error || mkdtemp(pattern.data()) == nullptr)
        throw TemporaryFolderError("No folder for temporary files can be made: " +
                                   (error ? error.message() : std::strerror(errno)) + ".");
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace tarnwick
