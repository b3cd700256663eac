// A folder for temporary files.
#pragma once

#include "TarnwickBase/Unfinished.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// There is no place for one; what() is one sentence.
struct TemporaryFolderError : std::runtime_error {
    explicit TemporaryFolderError(const std::string& reason)
        : std::runtime_error("No folder for temporary files can be made: " + reason + "."),
          reason(reason) {}
    std::string reason; // "Permission denied"
};

// Of mode 0700; it goes with its owner, and all that is in it. A process that is killed leaves it;
// then the next one to make such a folder in the same place removes it. For that a file in it,
// `.tarnwick-owner`, is locked as long as the folder is in use: the system unlocks it when the
// process ends, however it ends. A signal that ends the process removes it at once (EndSignals.h).
// A folder of another user, one that is in use, and one on a file system that has no locks stay.
// Blocks.
class TemporaryFolder {
  public:
    // Where TMPDIR says or in /tmp. Throws TemporaryFolderError.
    TemporaryFolder();
    // In `parent`, called NAME.NUMBER.partial: for a file that is to be renamed into `parent`,
    // which only works within one file system. Throws TemporaryFolderError.
    TemporaryFolder(const std::filesystem::path& parent, std::string_view name);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    int owner_ = -1; // the locked file's descriptor
    std::optional<Unfinished> unfinished_;
};

} // namespace tarnwick
