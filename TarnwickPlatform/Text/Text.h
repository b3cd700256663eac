// Drawing text into pictures in memory.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <string_view>

namespace tarnwick {

// A rectangle in points, one point a pixel, from the picture's upper left. It may reach outside.
struct TextBand {
    double x = 0, y = 0, width = 0, height = 0;
};

// Draws `text` (UTF-8; what is not is shown as replacement characters) in white over the picture, in
// the system's font at `points`, wrapped at words to the band's width, each line centred. The lines
// stand in the middle of the band; of more than fit the last are left out, so that none is cut. A
// band without width or height shows nothing. The picture's sides are at most 32767 pixels and its
// rows a multiple of 4 bytes apart.
void drawCenteredText(Picture& picture, std::string_view text, double points, const TextBand& band);

} // namespace tarnwick
