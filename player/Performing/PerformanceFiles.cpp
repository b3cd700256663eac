#include "player/Performing/PerformanceFiles.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Animation/DocumentError.h"
#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace tarnwick::player {
namespace {

constexpr const char* ending = ".performance";

[[noreturn]] void cannotWrite(const std::filesystem::path& file) {
    throw PerformanceFileError(file.string() + " cannot be written: " + std::strerror(errno) + ".");
}

// "Rose 2026-03-01 20.15.07".
std::string nameOf(const std::string& title) {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    std::array<char, 40> text{};
    std::strftime(text.data(), text.size(), " %Y-%m-%d %H.%M.%S", &parts);
    return std::filesystem::path(FileNames::safe(title)).stem().string() + text.data();
}

} // namespace

std::filesystem::path performancesFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path base;
    if (data != nullptr && *data == '/')
        base = data;
    else
        base = std::filesystem::path(home == nullptr ? "/tmp" : home) / ".local" / "share";
    return base / "tarnwick" / "performances";
}

PerformanceFile::PerformanceFile(const std::filesystem::path& folder, const std::string& title) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const std::string name = nameOf(title);
    for (int number = 1; !file_; ++number) {
        path_ = folder / (name + (number > 1 ? " " + std::to_string(number) : "") + ending);
        constexpr mode_t mode = 0666; // the umask of the user applies
        const int descriptor = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor >= 0)
            file_.reset(fdopen(descriptor, "w"));
        else if (errno != EEXIST)
            cannotWrite(path_);
    }
}

void PerformanceFile::append(std::string_view lines) {
    const bool isWritten =
        std::fwrite(lines.data(), 1, lines.size(), file_.get()) == lines.size() &&
        std::fflush(file_.get()) == 0;
    if (!isWritten)
        cannotWrite(path_);
}

std::vector<KeptPerformance> keptPerformances(const std::filesystem::path& folder) {
    std::vector<KeptPerformance> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().extension() != ending)
            continue;
        try {
            if (const auto text = fileText(entry.path())) {
                const Performance::Summary summary = Performance::summary(*text);
                found.push_back({entry.path(), summary.title, summary.length,
                                 std::filesystem::last_write_time(entry.path(), error)});
            }
        } catch (const DocumentError&) {
            continue;
        }
    }
    std::ranges::sort(found, std::ranges::greater{}, &KeptPerformance::time);
    return found;
}

Performance readPerformance(const std::filesystem::path& file) {
    const auto text = fileText(file);
    if (!text)
        throw PerformanceFileError(file.string() + " is missing or is not text in UTF-8.");
    try {
        return Performance::decode(*text);
    } catch (const DocumentError& error) {
        throw PerformanceFileError(file.string() + " holds no performance: " + error.what());
    }
}

void copyPerformance(const std::filesystem::path& from, const std::filesystem::path& to) {
    const Performance performance =
        movedTo(to.parent_path(), readPerformance(from), from.parent_path());
    try {
        writeWholeFile(to, performance.encode());
    } catch (const WholeFileError& error) {
        throw PerformanceFileError(error.what());
    }
}

} // namespace tarnwick::player
