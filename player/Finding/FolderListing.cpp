#include "player/Finding/FolderListing.h"

#include "TarnwickBase/InstalledFiles.h"
#include "player/Finding/WordSearch.h"

#include <algorithm>
#include <cctype>

namespace tarnwick::player {
namespace {

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

// The digits at the start of `text` without leading zeros; `text` continues after them.
std::string_view takeNumber(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    std::string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

char lower(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

// Whether `a` is before `b` in the order of people.
bool isBefore(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const std::string_view left = takeNumber(a), right = takeNumber(b);
            if (left.size() != right.size())
                return left.size() < right.size();
            if (left != right)
                return left < right;
            continue;
        }
        if (lower(a.front()) != lower(b.front()))
            return lower(a.front()) < lower(b.front());
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return a.size() < b.size();
}

bool isEpisode(const std::filesystem::path& file) {
    std::string ending = file.extension().string();
    std::ranges::transform(ending, ending.begin(), lower);
    return ending == ".metal";
}

} // namespace

FolderListing FolderListing::of(const std::filesystem::path& folder) {
    FolderListing listing{.folder = folder, .entries = {}, .failure = {}};
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    if (error)
        listing.failure = folder.string() + " cannot be read: " + error.message() + ".";
    for (const std::filesystem::directory_iterator end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        const bool isFolder = entry->is_directory(unknown);
        const bool isFile = entry->is_regular_file(unknown) && isEpisode(entry->path());
        if (entry->path().filename().string().starts_with('.') || !(isFolder || isFile))
            continue;
        listing.entries.push_back({entry->path(), entry->last_write_time(unknown), isFolder});
        if (listing.entries.size() == most)
            break;
    }
    return listing;
}

std::vector<FolderEntry> existing(const std::vector<std::filesystem::path>& files) {
    std::vector<FolderEntry> entries;
    for (const auto& file : files) {
        std::error_code error;
        if (std::filesystem::is_regular_file(file, error))
            entries.push_back({file, std::filesystem::last_write_time(file, error), false});
    }
    return entries;
}

std::vector<FolderEntry> arranged(std::vector<FolderEntry> entries, FolderOrder order,
                                  std::string_view filter) {
    std::erase_if(entries, [&](const FolderEntry& entry) {
        return !hasWords(filter, entry.path.filename().string());
    });
    std::ranges::sort(entries, [order](const FolderEntry& a, const FolderEntry& b) {
        if (a.isFolder != b.isFolder)
            return a.isFolder;
        if (order == FolderOrder::newest && a.changed != b.changed)
            return a.changed > b.changed;
        return isBefore(a.path.filename().string(), b.path.filename().string());
    });
    return entries;
}

std::filesystem::path shippedEpisodes() {
    auto folder = installedFile(InstalledFile::episodes);
    std::error_code error;
    return std::filesystem::is_directory(folder, error) ? folder : std::filesystem::path();
}

} // namespace tarnwick::player
