// Files that appear complete or not at all.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// A file cannot be written. what() is one sentence: "FILE cannot be written: REASON."
struct WholeFileError : std::runtime_error {
    WholeFileError(const std::filesystem::path& file, const std::string& reason)
        : std::runtime_error(file.string() + " cannot be written: " + reason + "."),
          reason(reason) {}
    std::string reason; // "Permission denied"
};

// Writes `bytes` to `file`: first into a folder beside it, then by renaming, so that a reader finds
// either the old bytes or the new ones. A link is followed and remains; its target is replaced.
// Throws WholeFileError, also if `file` exists and is not a regular file. Blocks.
void writeWholeFile(const std::filesystem::path& file, std::string_view bytes);

// A file that another writer fills, in a temporary folder beside its place, until it is complete.
class UnfinishedFile {
  public:
    // Throws WholeFileError as checkWholeFile() does.
    explicit UnfinishedFile(const std::filesystem::path& file);
    ~UnfinishedFile() = default; // removes the file, unless it was finished
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::filesystem::path& path() const { return partial_; } // of the file to write
    // Moves the file to its place and replaces an existing file. Throws WholeFileError.
    void finish();

  private:
    std::filesystem::path target_;
    TemporaryFolder folder_;
    std::filesystem::path partial_;
};

// Throws WholeFileError if writeWholeFile() cannot work: the folder is missing or not writable, or
// `file` is not a regular file. Call it before long work.
void checkWholeFile(const std::filesystem::path& file);

} // namespace tarnwick
