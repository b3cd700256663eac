#include "player/Exports/ResultPicture.h"

#include "TarnwickPlatform/Movie/FirstPicture.h"
#include "TarnwickPlatform/Pictures/Halved.h"
#include "TarnwickPlatform/Pictures/PNG.h"

#include <algorithm>
#include <system_error>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t longestSide = 512; // pixels

std::optional<Picture> reduced(Picture picture) {
    while (std::max(picture.width, picture.height) > longestSide &&
           std::min(picture.width, picture.height) > 1)
        picture = halved(picture);
    return picture;
}

std::optional<fs::path> firstPNG(const fs::path& folder) {
    std::optional<fs::path> first;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".png" && (!first || entry.path() < *first))
            first = entry.path();
    return first;
}

} // namespace

std::optional<Picture> resultPicture(const fs::path& result) {
    std::error_code error;
    if (fs::is_directory(result, error)) {
        const auto first = firstPNG(result);
        return first ? resultPicture(*first) : std::nullopt;
    }
    if (result.extension() != ".png")
        return firstPictureOf(result, longestSide);
    try {
        return reduced(readPNG(result));
    } catch (const PictureError&) {
        return std::nullopt;
    }
}

} // namespace tarnwick::player
