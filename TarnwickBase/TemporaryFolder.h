// A folder for temporary files.
#pragma once

#include "TarnwickBase/Unfinished.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// A temporary folder cannot be made. what() is one sentence.
struct TemporaryFolderError : std::runtime_error {
    explicit TemporaryFolderError(const std::string& reason)
        : std::runtime_error("No folder for temporary files can be made: " + reason + "."),
          reason(reason) {}
    std::string reason; // "Permission denied"
};

// A folder of mode 0700. The destructor removes it with its content. The folder of a process that
// was killed remains; the next process that makes a temporary folder in the same place removes it.
// The file `.tarnwick-owner` in a folder is locked as long as the folder is in use; the system
// unlocks it when the process ends for any reason. A signal that ends the process removes the
// folder at once (EndSignals.h). Never removed: folders of other users, folders in use, and folders
// on a file system without locks. Blocks.
class TemporaryFolder {
  public:
    // In the folder that TMPDIR names, default: /tmp. Throws TemporaryFolderError.
    TemporaryFolder();
    // In `parent`, with the name NAME.NUMBER.partial: for a file that is later renamed into
    // `parent`, on the same file system. Throws TemporaryFolderError.
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
