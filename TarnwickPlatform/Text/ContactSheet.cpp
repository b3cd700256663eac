#include "TarnwickPlatform/Text/ContactSheet.h"

#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickPlatform/Text/Text.h"

#include <array>

namespace tarnwick {
namespace {

constexpr std::array<std::uint8_t, 3> ground{0x16, 0x16, 0x16};

} // namespace

Picture contactSheet(std::span<const LabelledPicture> pictures, const SheetLayout& layout) {
    Picture sheet = filledPicture(static_cast<std::uint32_t>(layout.width()),
                                  static_cast<std::uint32_t>(layout.height()), ground);
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
