#include "TarnwickPlatform/Text/ContactSheet.h"

#include "TarnwickPlatform/Text/Text.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr std::uint8_t ground = 0x16; // of blue, green and red

void paste(Picture& sheet, const Picture& picture, std::size_t x, std::size_t y) {
    for (std::size_t row = 0; row < picture.height; ++row) {
        const auto from =
            picture.bytes.begin() + static_cast<std::ptrdiff_t>(row * picture.bytesPerRow);
        std::copy_n(from, std::size_t{picture.width} * 4,
                    sheet.bytes.begin() +
                        static_cast<std::ptrdiff_t>((y + row) * sheet.bytesPerRow + x * 4));
    }
}

} // namespace

Picture contactSheet(std::span<const LabelledPicture> pictures, const SheetLayout& layout) {
    Picture sheet{.width = static_cast<std::uint32_t>(layout.width()),
                  .height = static_cast<std::uint32_t>(layout.height()),
                  .bytesPerRow = static_cast<std::size_t>(layout.width()) * 4};
    sheet.bytes.assign(sheet.bytesPerRow * sheet.height, ground);
    std::size_t index = 0;
    for (const auto& [picture, text] : pictures) {
        const std::size_t x =
            layout.gap + index % layout.columns * (layout.pictureWidth + layout.gap);
        const std::size_t y = layout.gap + index / layout.columns *
                                               (layout.pictureHeight + layout.label() + layout.gap);
        paste(sheet, picture, x, y);
        drawCenteredText(sheet, text, 14,
                         {.x = static_cast<double>(x),
                          .y = static_cast<double>(y + layout.pictureHeight),
                          .width = static_cast<double>(layout.pictureWidth),
                          .height = static_cast<double>(layout.label())});
        ++index;
    }
    return sheet;
}

} // namespace tarnwick
