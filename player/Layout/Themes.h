// The colours of the light and the dark theme.
#pragma once

#include <QPalette>

namespace tarnwick::player {

QPalette lightPalette();
QPalette darkPalette();

} // namespace tarnwick::player
