// Draws shapes and wrapped text into a transparent picture, which is laid over others.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickPlatform/Text/Text.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// sRGB, each in [0, 1], not premultiplied.
struct Ink {
    double red = 1, green = 1, blue = 1, alpha = 1;

    constexpr Ink faded(double part) const { return {red, green, blue, alpha * part}; }
    bool operator==(const Ink&) const = default;
};

// One paragraph in one size. Line breaks in the text are drawn as signs; text after 4096 bytes is
// ignored.
struct TextBlock {
    struct Stretch {
        std::size_t start = 0, length = 0; // bytes of the text, at character boundaries
        Ink ink;

        bool operator==(const Stretch&) const = default;
    };
    enum class Typeface { text, code }; // the system's font; a monospaced font
    enum class Weight { normal, bold };

    std::string text; // UTF-8; invalid bytes are drawn as replacement characters
    Typeface typeface = Typeface::text;
    Weight weight = Weight::normal;
    double points = 16;               // pixels
    double lineHeight = 1.4;          // as a multiple of `points`
    double spacing = 0;               // pixels added between characters
    Ink ink;                          // outside the stretches
    std::vector<Stretch> stretches{}; // a later one replaces an earlier one
    double width = 0; // pixels, at least 1; text wraps at words, or within a word that is too wide
    double hanging = 0; // pixels by which lines after the first are indented
    int lines = 1;      // at most, at least 1; the last one ends in an ellipsis if text is cut
};

struct TextExtent {
    double width = 0, height = 0; // pixels
    int lines = 0;
};

// The extent of a block when drawn. Any thread.
TextExtent extentOf(const TextBlock& block);

class Canvas {
  public:
    // Makes a transparent canvas. Each side in [1, 32767] pixels.
    Canvas(std::uint32_t width, std::uint32_t height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // Fills a rectangle. Its corners are rounded by `radius` pixels, at most to a half circle.
    void fill(const TextBand& area, const Ink& ink, double radius = 0);
    // Draws the block with its upper left corner at (x, y), its own width and the height of
    // extentOf.
    void draw(const TextBlock& block, double x, double y);

    // A copy of the canvas. The fourth byte of a pixel is alpha; the colours are premultiplied.
    Picture picture() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
