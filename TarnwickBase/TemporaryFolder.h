// A folder for files that nobody needs later.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace tarnwick {

// There is no place for one; what() is one sentence.
struct TemporaryFolderError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Of mode 0700, where TMPDIR says or in /tmp; it goes with its owner, and all that is in it.
class TemporaryFolder {
  public:
    TemporaryFolder(); // throws TemporaryFolderError
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace tarnwick
