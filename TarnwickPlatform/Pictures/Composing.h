// Puts pictures together.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnwick {

// A picture of one colour: blue, green, red.
Picture filledPicture(std::uint32_t width, std::uint32_t height,
                      const std::array<std::uint8_t, 3>& color);

// Copies `picture` into `sheet` with its upper left at (x, y). The sheet has room for it.
void paste(Picture& sheet, const Picture& picture, std::size_t x, std::size_t y);

// Lays `above` over `below`, of the same size. The fourth bytes of `above` are alpha, and its
// colours are premultiplied.
void layOver(Picture& below, const Picture& above);

} // namespace tarnwick
