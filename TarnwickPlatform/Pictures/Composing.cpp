#include "TarnwickPlatform/Pictures/Composing.h"

#include <algorithm>

namespace tarnwick {

Picture filledPicture(std::uint32_t width, std::uint32_t height,
                      const std::array<std::uint8_t, 3>& color) {
    Picture picture{.width = width, .height = height, .bytesPerRow = std::size_t{width} * 4};
    picture.bytes.assign(picture.bytesPerRow * height, 255);
    for (std::size_t at = 0; at < picture.bytes.size(); at += 4)
        std::ranges::copy(color, picture.bytes.begin() + static_cast<std::ptrdiff_t>(at));
    return picture;
}

void paste(Picture& sheet, const Picture& picture, std::size_t x, std::size_t y) {
    for (std::size_t row = 0; row < picture.height; ++row) {
        const auto from =
            picture.bytes.begin() + static_cast<std::ptrdiff_t>(row * picture.bytesPerRow);
        std::copy_n(from, std::size_t{picture.width} * 4,
                    sheet.bytes.begin() +
                        static_cast<std::ptrdiff_t>((y + row) * sheet.bytesPerRow + x * 4));
    }
}

void layOver(Picture& below, const Picture& above) {
    for (std::size_t row = 0; row < below.height; ++row) {
        std::uint8_t* to = &below.bytes[row * below.bytesPerRow];
        const std::uint8_t* from = &above.bytes[row * above.bytesPerRow];
        for (std::size_t pixel = 0; pixel < below.width; ++pixel, to += 4, from += 4)
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const int through = to[channel] * (255 - from[3]);
                to[channel] =
                    static_cast<std::uint8_t>(std::min(from[channel] + (through + 127) / 255, 255));
            }
    }
}

} // namespace tarnwick
