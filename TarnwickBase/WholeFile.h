// Files that appear whole or not at all.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"

#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace tarnwick {

// A file could not be written; what() is one sentence that names it.
struct WholeFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Writes `bytes` as `file`: into a folder beside it first, then renamed, so that a reader finds the
// old bytes or the new ones. What a link leads to is replaced, not the link.
// Throws WholeFileError; also when `file` is there and is no regular file. Blocks.
void writeWholeFile(const std::filesystem::path& file, std::string_view bytes);

// A file that somebody else writes, in a temporary folder beside its place, until it is complete.
class UnfinishedFile {
  public:
    // Throws as checkWholeFile() does.
    explicit UnfinishedFile(const std::filesystem::path& file);
    ~UnfinishedFile() = default; // without finish() nothing remains
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::filesystem::path& path() const { return partial_; } // where to write it
    // Gives it its own name, in place of a file that has that. Throws WholeFileError.
    void finish();

  private:
    std::filesystem::path target_;
    TemporaryFolder folder_;
    std::filesystem::path partial_;
};

// Throws WholeFileError where writeWholeFile() would as things stand: the folder is missing or may
// not be written to, or `file` is no regular file. To be asked before long work.
void checkWholeFile(const std::filesystem::path& file);

} // namespace tarnwick
