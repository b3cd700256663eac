// Many pictures on one, each with a few lines of text under it.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>

namespace tarnwick {

struct LabelledPicture {
    Picture picture;
    std::string label; // UTF-8; wrapped at words; what does not fit below is left out
};

// In pixels, of a sheet of `count` pictures of one size.
struct SheetLayout {
    std::uint32_t columns = 1; // at least 1
    std::uint32_t pictureWidth = 0, pictureHeight = 0;
    std::size_t count = 0;
    std::uint32_t lines = 1; // of text that fit below each picture

    static constexpr std::uint32_t gap = 12;  // around each picture
    static constexpr std::uint32_t line = 18; // of text

    std::uint32_t label() const { return lines * line + 8; } // below each picture

    std::uint64_t width() const { return columns * (std::uint64_t{pictureWidth} + gap) + gap; }
    std::uint64_t height() const {
        const std::uint64_t rows = (count + columns - 1) / columns;
        return rows * (std::uint64_t{pictureHeight} + label() + gap) + gap;
    }
};

// Row by row from the upper left. The pictures have the layout's size and number, and neither side
// of the sheet is above 32767 pixels.
Picture contactSheet(std::span<const LabelledPicture> pictures, const SheetLayout& layout);

} // namespace tarnwick
