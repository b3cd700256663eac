// The colours of the keys panel, readable on light and dark palettes.
#pragma once

#include <QColor>
#include <QPalette>
#include <cstddef>

namespace tarnwick::player {

bool isDark(const QPalette& palette);
QColor colorOfParameter(std::size_t row, const QPalette& palette);
QColor colorOfPlayhead(const QPalette& palette);
// Between the colours of the base (0) and of the text (1).
QColor shade(const QPalette& palette, double share);

} // namespace tarnwick::player
