// Drawing text into pictures in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarnwick {

// Pixels that someone else owns: rows of 4 bytes a pixel in the order blue, green, red, unused,
// from the top. `bytesPerRow` is at least 4 * width and a multiple of 4.
struct PixelRows {
    std::uint8_t* bytes = nullptr;
    std::uint32_t width = 0;  // pixels, [0, 32767]
    std::uint32_t height = 0; // pixels, [0, 32767]
    std::size_t bytesPerRow = 0;
};

// A rectangle in points, one point a pixel, from the picture's upper left. It may reach outside.
struct TextBand {
    double x = 0, y = 0, width = 0, height = 0;
};

// Draws `text` (UTF-8; what is not is shown as replacement characters) in white over the picture,
// in the system's font at `points`, wrapped at words to the band's width, each line centred. Text
// that is lower than the band stands in its middle; of higher text what begins at the band's top
// and ends at its bottom is seen. A band without width or height shows nothing.
void drawCenteredText(const PixelRows& picture, std::string_view text, double points,
                      const TextBand& band);

} // namespace tarnwick
