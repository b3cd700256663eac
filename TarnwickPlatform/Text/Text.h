// Draws text into pictures in memory.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <string_view>

namespace tarnwick {

// A rectangle in points from the picture's upper left; a point is a pixel. It may exceed the
// picture.
struct TextBand {
    double x = 0, y = 0, width = 0, height = 0;
};

// Draws `text` (UTF-8; invalid bytes are drawn as replacement characters) in white over the
// picture, in the system's font at `points`, wrapped at words to the band's width. Each line is
// centred; the lines are in the middle of the band's height, and those that do not fit are left
// out. A band without width or height draws nothing. The picture's sides are at most 32767 pixels,
// and its bytesPerRow is a multiple of 4.
void drawCenteredText(Picture& picture, std::string_view text, double points, const TextBand& band);

} // namespace tarnwick
