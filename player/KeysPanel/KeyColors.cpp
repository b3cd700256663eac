#include "player/KeysPanel/KeyColors.h"

#include <cmath>

namespace tarnwick::player {

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightnessF() < 0.5F;
}

// Neighbours have distant hues: steps of the golden ratio. The first ones are far from the blue of
// the selection.
QColor colorOfParameter(std::size_t row, const QPalette& palette) {
    const double hue = std::fmod(0.09 + 0.618034 * static_cast<double>(row), 1.0);
    return QColor::fromHslF(static_cast<float>(hue), 0.62F, isDark(palette) ? 0.64F : 0.42F);
}

QColor colorOfPlayhead(const QPalette& palette) {
    return QColor::fromHslF(0.01F, 0.82F, isDark(palette) ? 0.62F : 0.5F);
}

QColor shade(const QPalette& palette, double share) {
    const QColor base = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
    const auto mix = [share](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * share));
    };
    return {mix(base.red(), text.red()), mix(base.green(), text.green()),
            mix(base.blue(), text.blue())};
}

} // namespace tarnwick::player
