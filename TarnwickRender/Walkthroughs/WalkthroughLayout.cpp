#include "TarnwickRender/Walkthroughs/WalkthroughLayout.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

WalkthroughLayout WalkthroughLayout::of(std::int64_t width, std::int64_t height) {
    precondition(std::min(width, height) >= leastSide && std::max(width, height) <= greatestSide,
                 "the sides of a frame are within the limits of a walkthrough", "width", width,
                 "height", height, "minimum", leastSide, "maximum", greatestSide);
    const auto w = static_cast<double>(width), h = static_cast<double>(height);
    const bool isSideBySide = w > 1.2 * h;
    const double share = isSideBySide || h < 1.5 * w ? 0.40 : 0.45; // of the picture
    WalkthroughLayout layout{.width = width, .height = height};
    layout.picture = isSideBySide ? Area{0, 0, std::llround(share * w), height}
                                  : Area{0, 0, width, std::llround(share * h)};
    Area& text = layout.text;
    text = isSideBySide ? Area{layout.picture.width, 0, width - layout.picture.width, height}
                        : Area{0, layout.picture.height, width, height - layout.picture.height};
    // In frames that are nearly square words are smaller, so that a page holds more than a few.
    layout.unit = static_cast<double>(std::min(text.width, text.height)) / 0.85;
    layout.unit = std::min(layout.unit, std::min(w, h));
    const std::int64_t margin = std::llround(0.05 * layout.unit);
    text = {text.x + margin, text.y + margin, text.width - 2 * margin, text.height - 2 * margin};
    return layout;
}

double WalkthroughLayout::codeHeight() const {
    return static_cast<double>(text.height) - headingHeight() - summaryHeight() - gap() -
           2 * padding() - gap() - captionHeight();
}

std::int64_t WalkthroughLayout::capacity() const {
    const double lines = codeHeight() / (codeLineHeight * readableCodePoints());
    return std::max<std::int64_t>(1, static_cast<std::int64_t>(lines));
}

} // namespace tarnwick
