// Sizes and places on a screen. One point is one pixel here.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstddef>
#include <cstdint>

namespace tarnwick {

// Black all over.
inline Picture blackPicture(const PixelSize& size) {
    const std::size_t bytesPerRow = std::size_t{4} * size.width;
    return {size.width, size.height, bytesPerRow,
            std::vector<std::uint8_t>(bytesPerRow * size.height)};
}

struct Rectangle {
    double x = 0, y = 0;          // points, from the upper left
    double width = 0, height = 0; // points

    PixelSize pixels() const {
        return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    }
    bool operator==(const Rectangle&) const = default;
};

} // namespace tarnwick
