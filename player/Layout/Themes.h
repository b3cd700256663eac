// The colours of the themes.
#pragma once

#include <QPalette>

namespace tarnwick::player {

QPalette lightPalette();
QPalette darkPalette();
QPalette highContrastPalette(); // white on black

// Whether text is lighter than its ground.
bool isDarkPalette(const QPalette& palette);
// The contrast ratio of two opaque colours, [1, 21] (WCAG 2.1, 1.4.3).
double contrastRatio(const QColor& one, const QColor& other);
// The palette of a desktop, with lighter or darker colours for dim text (disabled, placeholders) of
// too little contrast: some platforms derive them from the colour of buttons, which may be black.
QPalette withReadableDimText(QPalette palette);

} // namespace tarnwick::player
