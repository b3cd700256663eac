#include "player/Layout/Themes.h"

#include <QColor>

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
                      .highlight = 0x3d7fcc,
                      .highlightedText = 0xffffff,
                      .tip = 0x3a3320,
                      .tipText = 0xf2e9cf});
}

} // namespace tarnwick::player
