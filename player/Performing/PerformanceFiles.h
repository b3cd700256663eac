// The files in which performances are kept.
#pragma once

#include "TarnwickCore/Performance/Performance.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

// A performance cannot be read or written. what() is one sentence that names the file.
struct PerformanceFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// XDG_DATA_HOME/tarnwick/performances (XDG Base Directory Specification 0.8); default: below
// ~/.local/share.
std::filesystem::path performancesFolder();

// A file that grows while a performance is recorded. One thread at a time; all functions block.
class PerformanceFile {
  public:
    // Makes a new file in `folder`, named for the title and the present time. Throws
    // PerformanceFileError.
    PerformanceFile(const std::filesystem::path& folder, const std::string& title);

    const std::filesystem::path& path() const { return path_; }
    // Adds lines, and passes them to the system. Throws PerformanceFileError.
    void append(std::string_view lines);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::filesystem::path path_;
    std::unique_ptr<std::FILE, Close> file_;
};

struct KeptPerformance {
    std::filesystem::path file;
    std::string title; // of the episode
    double length = 0; // seconds
    std::filesystem::file_time_type time{};
};

// The performances in `folder`, the newest first. Unreadable ones are ignored and remain. Blocks.
std::vector<KeptPerformance> keptPerformances(const std::filesystem::path& folder);

// Throws PerformanceFileError. Blocks.
Performance readPerformance(const std::filesystem::path& file);
// Copies the performance, with the paths of its inputs as they are there; a file that exists is
// replaced. Throws PerformanceFileError. Blocks.
void copyPerformance(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace tarnwick::player
