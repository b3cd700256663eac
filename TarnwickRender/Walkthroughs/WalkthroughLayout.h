// The places of picture, code and text on the pages of a walkthrough.
#pragma once

#include "TarnwickRender/ExportSegment.h"

#include <cstdint>

namespace tarnwick {

// For one size of frame. The picture fills the left part of a frame that is wider than high, else
// the upper part. Code and text share the rest, within a margin.
struct WalkthroughLayout {
    using Area = FrameLayout::Area;

    std::int64_t width = 0, height = 0; // pixels, from `leastSide` to `greatestSide`
    Area picture;                       // of the program
    Area text;                          // of code and text
    double unit = 0;                    // pixels; all sizes below are multiples of it

    static constexpr std::int64_t leastSide = 160, greatestSide = 16384;
    static WalkthroughLayout of(std::int64_t width, std::int64_t height);

    // Sizes of the type, in pixels.
    double labelPoints() const { return 0.0185 * unit; }
    double titlePoints() const { return 0.043 * unit; }
    double wordPoints() const { return 0.0235 * unit; } // summaries and captions
    double greatestCodePoints() const { return 0.027 * unit; }
    double readableCodePoints() const { return 0.0205 * unit; }
    double leastCodePoints() const { return 0.0165 * unit; }

    // Heights of lines, as multiples of the type's size.
    static constexpr double codeLineHeight = 1.45;
    static constexpr double wordLineHeight = 1.4;
    double labelHeight() const { return 1.7 * labelPoints(); }
    double titleHeight() const { return 1.5 * titlePoints(); }
    double headingHeight() const { return labelHeight() + titleHeight(); } // without a summary
    double summaryHeight() const { return summaryLines * wordLineHeight * wordPoints(); } // at most
    double captionHeight() const { return captionLines * wordLineHeight * wordPoints(); } // at most
    static constexpr int summaryLines = 2, captionLines = 4;                              // at most

    double gap() const { return 0.03 * unit; }      // between heading, code and caption
    double padding() const { return 0.018 * unit; } // around the code
    double codeWidth() const { return static_cast<double>(text.width) - 2 * padding(); }
    // The height of the code under a heading and a caption of maximum height.
    double codeHeight() const;

    // Maximum of lines of code at a readable size; at least 1.
    std::int64_t capacity() const;
};

} // namespace tarnwick
