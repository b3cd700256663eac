// Drawing shapes and wrapped text into a transparent picture, to be laid over others.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickPlatform/Text/Text.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// Of sRGB, each in [0, 1], the colours not premultiplied.
struct Ink {
    double red = 1, green = 1, blue = 1, alpha = 1;

    constexpr Ink faded(double part) const { return {red, green, blue, alpha * part}; }
    bool operator==(const Ink&) const = default;
};

// One paragraph in one size. Breaks of lines within the text are shown as signs; of more text than
// 4096 bytes the rest is left out.
struct TextBlock {
    struct Stretch {
        std::size_t start = 0, length = 0; // bytes of the text, at characters' edges
        Ink ink;

        bool operator==(const Stretch&) const = default;
    };
    enum class Typeface { text, code }; // the system's font; one whose characters are equally wide
    enum class Weight { normal, bold };

    std::string text; // UTF-8; what is not is shown as replacement characters
    Typeface typeface = Typeface::text;
    Weight weight = Weight::normal;
    double points = 16;               // pixels
    double lineHeight = 1.4;          // in parts of `points`
    double spacing = 0;               // pixels between characters, besides their own width
    Ink ink;                          // where no stretch has its own
    std::vector<Stretch> stretches{}; // later ones over earlier ones
    double width = 0;                 // pixels, at least 1; wrapped to it at words, else anywhere
    double hanging = 0;               // pixels that lines after the first are set in
    int lines = 1;                    // at most, from 1 on; the last one ends in an ellipsis if cut
};

struct TextExtent {
    double width = 0, height = 0; // pixels
    int lines = 0;
};

// What a block takes up when drawn. Any thread.
TextExtent extentOf(const TextBlock& block);

class Canvas {
  public:
    // Fully transparent. Each side in [1, 32767] pixels.
    Canvas(std::uint32_t width, std::uint32_t height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // Corners are rounded by `radius` pixels, at most to a half circle.
    void fill(const TextBand& area, const Ink& ink, double radius = 0);
    // With its upper left at (x, y); nothing is drawn outside of what extentOf says and the width.
    void draw(const TextBlock& block, double x, double y);

    // What was drawn so far. The fourth byte of a pixel is its alpha; the colours are
    // premultiplied by it.
    Picture picture() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
