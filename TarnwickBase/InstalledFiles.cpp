#include "TarnwickBase/InstalledFiles.h"

#include <array>
#include <system_error>

namespace tarnwick {
namespace {

// The folders of an installed tree (GNUInstallDirs), relative to the folder of the programs. The
// build sets the paths.
#define LIBRARY_PROGRAMS TARNWICK_PROGRAMS_TO_LIBEXEC "/"
#define DATA TARNWICK_PROGRAMS_TO_DATA "/"

// Relative paths from the folder of the running program.
struct Row {
    InstalledFile file;
    const char* installed;
    const char* beside; // in the build tree; for the installed worker, its own folder
};

constexpr auto fileCount = static_cast<std::size_t>(InstalledFile::count);

// clang-format off
constexpr std::array<Row, fileCount> rows{{
    {InstalledFile::commandLine,        "tarnwick",                             "tarnwick"},
    {InstalledFile::saver,              "tarnwick-saver",                       "tarnwick-saver"},
    {InstalledFile::player,             "tarnwick-player",                      "tarnwick-player"},
    {InstalledFile::compilerWorker,     LIBRARY_PROGRAMS "tarnwick-msl-worker", "tarnwick-msl-worker"},
    {InstalledFile::precompiledLibrary, LIBRARY_PROGRAMS "metal.pch",           "metal.pch"},
    {InstalledFile::saverBundle,        DATA "Tarnwick.saver",                  "Tarnwick.saver"},
    {InstalledFile::episodes,           DATA "episodes",                        TARNWICK_BUILT_TO_EPISODES},
    {InstalledFile::handbook,           TARNWICK_PROGRAMS_TO_HANDBOOK "/index.html", TARNWICK_BUILT_TO_HANDBOOK "/index.html"},
}};
// clang-format on

static_assert(
    [] {
        for (std::size_t index = 0; index < fileCount; ++index)
            if (rows[index].file != static_cast<InstalledFile>(index))
                return false;
        return true;
    }(),
    "The rows are in the order of the enumeration.");

} // namespace

std::filesystem::path installedFile(InstalledFile file, const std::filesystem::path& programs) {
    const Row& row = rows[static_cast<std::size_t>(file)];
    const std::filesystem::path installed = (programs / row.installed).lexically_normal();
    std::error_code error;
    if (std::filesystem::exists(installed, error))
        return installed;
    const std::filesystem::path beside = (programs / row.beside).lexically_normal();
    return std::filesystem::exists(beside, error) ? beside : installed;
}

// The link of a replaced program ends with " (deleted)"; its folder is right.
std::filesystem::path installedFile(InstalledFile file) {
    std::error_code error;
    return installedFile(file,
                         std::filesystem::read_symlink("/proc/self/exe", error).parent_path());
}

} // namespace tarnwick
