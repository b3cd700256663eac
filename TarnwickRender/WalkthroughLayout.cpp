#include "TarnwickRender/WalkthroughLayout.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

WalkthroughLayout WalkthroughLayout::of(std::int64_t width, std::int64_t height) {
    precondition(std::min(width, height) >= leastSide && std::max(width, height) <= greatestSide,
                 "Callers ask for frames within the limits.");
    const auto whole = [](double pixels) { return std::llround(pixels); };
    WalkthroughLayout layout{.width = width, .height = height};
    const auto shorter = static_cast<double>(std::min(width, height));
    layout.unit = shorter;
    const std::int64_t margin = whole(0.05 * shorter);
    const auto w = static_cast<double>(width), h = static_cast<double>(height);
    if (w > 1.2 * h) {
        layout.picture = {0, 0, whole(0.44 * w), height};
        layout.text = {layout.picture.width + margin, margin, 0, height - 2 * margin};
    } else {
        layout.picture = {0, 0, width, whole(0.42 * h)};
        layout.text = {margin, layout.picture.height + margin, 0, 0};
        layout.text.height = height - layout.text.y - margin;
    }
    layout.text.width = width - layout.text.x - margin;
    return layout;
}

double WalkthroughLayout::headingHeight(int summary) const {
    return 1.6 * labelPoints() + 1.35 * titlePoints() + summary * wordLineHeight * wordPoints();
}

double WalkthroughLayout::codeHeight() const {
    return static_cast<double>(text.height) - headingHeight(summaryLines) - gap() - 2 * padding() -
           gap() - captionLines * wordLineHeight * wordPoints();
}

std::int64_t WalkthroughLayout::capacity() const {
    const double lines = codeHeight() / (codeLineHeight * readableCodePoints());
    return std::max<std::int64_t>(1, static_cast<std::int64_t>(lines));
}

} // namespace tarnwick
