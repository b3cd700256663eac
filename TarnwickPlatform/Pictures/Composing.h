// Putting pictures together.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnwick {

// Of one colour: blue, green, red.
Picture filledPicture(std::uint32_t width, std::uint32_t height,
                      const std::array<std::uint8_t, 3>& color);

// Copies `picture` to where its upper left comes to lie at (x, y) of `sheet`, which holds all of
// it.
void paste(Picture& sheet, const Picture& picture, std::size_t x, std::size_t y);

// Lays `above`, of the same size, over `below`: its fourth bytes are alpha, by which its colours
// have been multiplied.
void layOver(Picture& below, const Picture& above);

} // namespace tarnwick
