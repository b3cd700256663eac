#include "player/Thumbnails/ThumbnailStore.h"

#include "TarnwickBase/Version.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/SHA256.h"
#include "TarnwickPlatform/Pictures/PNG.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace tarnwick::player {

std::filesystem::path thumbnailsFolder() {
    const auto below = [](const char* variable, const char* rest) {
        const char* base = std::getenv(variable);
        return base != nullptr && *base == '/' ? std::filesystem::path(base) / rest
                                               : std::filesystem::path();
    };
    auto folder = below("XDG_CACHE_HOME", "tarnwick/thumbnails");
    return folder.empty() ? below("HOME", ".cache/tarnwick/thumbnails") : folder;
}

std::string thumbnailName(const Episode& episode, const Settings& settings, const PixelSize& size,
                          double time) {
    SHA256 digest;
    const auto add = [&](const std::string& text) {
        digest.update(text);
        digest.update(std::string_view("\0", 1));
    };
    add(programName());
    add(std::to_string(size.width) + "x" + std::to_string(size.height) + " " + shortest(time));
    try {
        add(settings.fitted(episode.params()).encode());
    } catch (const DocumentError&) { // a value that is not finite; drawn as such
        add("not finite");
    }
    add(episode.text);
    return digest.finish();
}

std::optional<Picture> ThumbnailStore::find(const std::string& name) const {
    if (folder_.empty())
        return std::nullopt;
    try {
        Picture picture = readPNG(fileOf(name));
        std::error_code error; // the time of its last use, for prune()
        std::filesystem::last_write_time(fileOf(name),
                                         std::filesystem::file_time_type::clock::now(), error);
        return picture;
    } catch (const PictureError&) {
        return std::nullopt;
    }
}

void ThumbnailStore::keep(const std::string& name, const Picture& picture) const {
    if (folder_.empty())
        return;
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    try {
        writePNG(picture, fileOf(name));
    } catch (const PictureError&) { // a full disk
    }
}

void ThumbnailStore::prune(std::uintmax_t budget) const {
    struct Entry {
        std::filesystem::file_time_type used;
        std::uintmax_t bytes;
        std::filesystem::path file;
    };
    std::vector<Entry> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder_, error), end; entry != end;
         entry.increment(error)) {
        const auto bytes = entry->file_size(error);
        if (!error && entry->path().extension() == ".png")
            entries.push_back({entry->last_write_time(error), bytes, entry->path()});
    }
    std::ranges::sort(entries, std::ranges::greater{}, &Entry::used);
    std::uintmax_t kept = 0;
    for (const Entry& entry : entries)
        if ((kept += entry.bytes) > budget)
            std::filesystem::remove(entry.file, error);
}

} // namespace tarnwick::player
