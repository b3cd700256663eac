// Where a walkthrough's pages have their picture, their code and their words.
#pragma once

#include "TarnwickRender/ExportSegment.h"

#include <cstdint>

namespace tarnwick {

// Of one size of frame. The picture fills the frame's left part, in frames that are not wider than
// high its upper part, up to three edges; code and words share what is left, within a margin.
struct WalkthroughLayout {
    using Area = FrameLayout::Area;

    std::int64_t width = 0, height = 0; // pixels, from `leastSide` to `greatestSide`
    Area picture;                       // of the program, whole pixels
    Area text;                          // of all words
    double unit = 0;                    // pixels that all sizes below go by

    static constexpr std::int64_t leastSide = 160, greatestSide = 16384;
    static WalkthroughLayout of(std::int64_t width, std::int64_t height);

    // Sizes of type, in pixels.
    double labelPoints() const { return 0.0185 * unit; }
    double titlePoints() const { return 0.043 * unit; }
    double wordPoints() const { return 0.0235 * unit; } // summaries and captions
    double greatestCodePoints() const { return 0.027 * unit; }
    double readableCodePoints() const { return 0.0205 * unit; }
    double leastCodePoints() const { return 0.0165 * unit; }

    // Of lines, in parts of the size.
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
    // What is left for code where heading and caption have all their lines.
    double codeHeight() const;

    // The most lines of code that fit at a readable size; at least 1.
    std::int64_t capacity() const;
};

} // namespace tarnwick
