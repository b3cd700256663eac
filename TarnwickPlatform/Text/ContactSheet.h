// Draws many pictures on one sheet, each with a few lines of text below it.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>

namespace tarnwick {

struct LabelledPicture {
    Picture picture;
    std::string label; // UTF-8; wrapped at words; lines that do not fit are left out
};

// The layout of a sheet of `count` pictures of one size, in pixels.
struct SheetLayout {
    std::uint32_t columns = 1; // at least 1
    std::uint32_t pictureWidth = 0, pictureHeight = 0;
    std::size_t count = 0;
    std::uint32_t lines = 1; // of text below each picture

    static constexpr std::uint32_t gap = 12;  // around each picture
    static constexpr std::uint32_t line = 18; // of text

    std::uint32_t label() const { return lines * line + 8; } // below each picture

    std::uint64_t width() const { return columns * (std::uint64_t{pictureWidth} + gap) + gap; }
    std::uint64_t height() const {
        const std::uint64_t rows = (count + columns - 1) / columns;
        return rows * (std::uint64_t{pictureHeight} + label() + gap) + gap;
    }
};

// Places the pictures row by row from the upper left. They must have the layout's size and number;
// each side of the sheet is at most 32767 pixels.
Picture contactSheet(std::span<const LabelledPicture> pictures, const SheetLayout& layout);

} // namespace tarnwick
