#include "programs/Doctor/FolderChecks.h"

#include "TarnwickBase/InstalledFiles.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

struct Row {
    const char* variable; // XDG Base Directory Specification 0.8
    const char* fallback; // below HOME
    std::string_view use;
};

constexpr Row rows[] = {
    {"XDG_CACHE_HOME", ".cache", "compiled pipelines and thumbnails"},
    {"XDG_STATE_HOME", ".local/state", "drafts and accounts"},
    {"XDG_DATA_HOME", ".local/share", "performances and savers"},
    {"XDG_CONFIG_HOME", ".config", "settings of the player"},
};

fs::path folderOf(const Row& row) {
    if (const char* set = std::getenv(row.variable); set && fs::path(set).is_absolute())
        return fs::path(set) / "tarnwick";
    const char* home = std::getenv("HOME");
    return home ? fs::path(home) / row.fallback / "tarnwick" : fs::path();
}

// Whether the folder, or the part of its path that exists, can be written to.
bool canWrite(fs::path folder) {
    std::error_code error;
    while (!fs::exists(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    return fs::is_directory(folder, error) && access(folder.c_str(), W_OK | X_OK) == 0;
}

Check folderCheck(const fs::path& folder, std::string_view use) {
    if (folder.empty())
        return {.result = CheckResult::fails,
                .subject = "folder",
                .name = "none",
                .text = "HOME is not set; required for " + std::string(use) + "."};
    const bool isWritable = canWrite(folder);
    return {.result = isWritable ? CheckResult::works : CheckResult::fails,
            .subject = "folder",
            .name = folder.string(),
            .text = std::string(isWritable ? "Can" : "Cannot") + " be written to, for " +
                    std::string(use) + "."};
}

Check programCheck(InstalledFile file, CheckResult ifMissing, std::string_view use,
                   std::string_view package) {
    const fs::path place = installedFile(file);
    std::error_code error;
    const bool isThere = fs::exists(place, error);
    return {.result = isThere ? CheckResult::works : ifMissing,
            .subject = "part",
            .name = place.filename().string(),
            .text = isThere ? "In " + place.parent_path().string() + "."
                            : "Not installed; " + std::string(use) + ".",
            .package = isThere ? "" : std::string(package)};
}

} // namespace

Checks folderChecks() {
    Checks checks;
    for (const Row& row : rows)
        checks.push_back(folderCheck(folderOf(row), row.use));
    std::error_code error;
    checks.push_back(folderCheck(fs::temp_directory_path(error), "unfinished files"));
    return checks;
}

Checks programChecks() {
    using enum CheckResult;
    return {
        programCheck(InstalledFile::saver, fails, "tarnwick saver requires it", "tarnwick"),
        programCheck(InstalledFile::saverBundle, fails, "the saver requires it", "tarnwick"),
        programCheck(InstalledFile::precompiledLibrary, fails,
                     "without it the compiler starts slowly", "libtarnwick-msl1"),
        programCheck(InstalledFile::player, absent, "tarnwick play requires it", "tarnwick-player"),
    };
}

} // namespace tarnwick
