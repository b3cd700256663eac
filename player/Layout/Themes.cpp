#include "player/Layout/Themes.h"

#include <QColor>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

struct Tones {
    QColor window, base, alternate, button, text, dim, highlight, highlightedText, tip, tipText;
};

QPalette paletteOf(const Tones& tones) {
    QPalette palette(tones.button, tones.window);
    palette.setColor(QPalette::Base, tones.base);
    palette.setColor(QPalette::AlternateBase, tones.alternate);
    palette.setColor(QPalette::Highlight, tones.highlight);
    palette.setColor(QPalette::HighlightedText, tones.highlightedText);
    palette.setColor(QPalette::ToolTipBase, tones.tip);
    palette.setColor(QPalette::ToolTipText, tones.tipText);
    palette.setColor(QPalette::PlaceholderText, tones.dim);
    palette.setColor(QPalette::Link, tones.highlight);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, tones.text);
        palette.setColor(QPalette::Disabled, role, tones.dim);
    }
    return palette;
}

constexpr double leastDimContrast = 2.5;

// `top` over `ground`.
QColor composed(const QColor& top, const QColor& ground, double share) {
    const auto part = [share](int above, int below) {
        return static_cast<int>(std::lround(below + (above - below) * share));
    };
    return {part(top.red(), ground.red()), part(top.green(), ground.green()),
            part(top.blue(), ground.blue())};
}

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(static_cast<double>(colour.redF())) +
           0.7152 * linear(static_cast<double>(colour.greenF())) +
           0.0722 * linear(static_cast<double>(colour.blueF()));
}

} // namespace

QPalette lightPalette() {
    return paletteOf({.window = 0xefefef,
                      .base = 0xffffff,
                      .alternate = 0xf4f4f4,
                      .button = 0xe6e6e6,
                      .text = 0x1b1d20,
                      .dim = 0x767a80,
                      .highlight = 0x2468b4,
                      .highlightedText = 0xffffff,
                      .tip = 0xfff6d6,
                      .tipText = 0x1b1d20});
}

QPalette darkPalette() {
    return paletteOf({.window = 0x23262b,
                      .base = 0x181a1e,
                      .alternate = 0x1f2226,
                      .button = 0x32363d,
                      .text = 0xe4e6ea,
                      .dim = 0x8b9099,
                      .highlight = 0x3776c0,
                      .highlightedText = 0xffffff,
                      .tip = 0x3a3320,
                      .tipText = 0xf2e9cf});
}

QPalette highContrastPalette() {
    return paletteOf({.window = Qt::black,
                      .base = Qt::black,
                      .alternate = 0x141414,
                      .button = 0x1c1c1c,
                      .text = 0xffffff,
                      .dim = 0xc4c4c4,
                      .highlight = 0xffd400,
                      .highlightedText = Qt::black,
                      .tip = Qt::black,
                      .tipText = 0xffffff});
}

bool isDarkPalette(const QPalette& palette) {
    return luminance(palette.color(QPalette::WindowText)) >
           luminance(palette.color(QPalette::Window));
}

double contrastRatio(const QColor& one, const QColor& other) {
    const double a = luminance(one) + 0.05, b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QPalette withReadableDimText(QPalette palette) {
    constexpr double share = 0.6;
    const auto mend = [&](QPalette::ColorGroup group, QPalette::ColorRole dim,
                          QPalette::ColorRole text, QPalette::ColorRole ground) {
        const QColor below = palette.color(group, ground), present = palette.color(group, dim);
        const QColor seen = composed(present, below, static_cast<double>(present.alphaF()));
        if (contrastRatio(seen, below) < leastDimContrast)
            palette.setColor(group, dim,
                             composed(palette.color(QPalette::Active, text), below, share));
    };
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        mend(group, QPalette::PlaceholderText, QPalette::Text, QPalette::Base);
    mend(QPalette::Disabled, QPalette::Text, QPalette::Text, QPalette::Base);
    mend(QPalette::Disabled, QPalette::WindowText, QPalette::WindowText, QPalette::Window);
    mend(QPalette::Disabled, QPalette::ButtonText, QPalette::ButtonText, QPalette::Button);
    return palette;
}

} // namespace tarnwick::player
