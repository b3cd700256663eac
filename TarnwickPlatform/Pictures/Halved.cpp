#include "TarnwickPlatform/Pictures/Halved.h"

namespace tarnwick {

Picture halved(const Picture& picture) {
    Picture half{.width = picture.width / 2, .height = picture.height / 2};
    half.bytesPerRow = half.width * std::size_t{4};
    half.bytes.resize(half.bytesPerRow * half.height);
    for (std::size_t y = 0; y < half.height; ++y)
        for (std::size_t at = 0; at < half.bytesPerRow; ++at) {
            const std::size_t left = at / 4 * 8 + at % 4;
            const std::uint8_t* above = &picture.bytes[2 * y * picture.bytesPerRow + left];
            const std::uint8_t* below = above + picture.bytesPerRow;
            half.bytes[y * half.bytesPerRow + at] =
                static_cast<std::uint8_t>((above[0] + above[4] + below[0] + below[4] + 2) / 4);
        }
    return half;
}

} // namespace tarnwick
