// What a native window shows where its owner has not drawn.
#pragma once

#include <cstdint>

class QWindow;

namespace tarnwick::player {

// Of a window that others covered.
enum class CoveredContent : std::uint8_t { isForgotten, isKept };

// The window, which exists on the platform, is black until it is drawn, and keeps its content when
// its size changes. With isKept the content comes back at once where a menu or another window
// covered it, also while a frame takes seconds; presenting then costs the server a copy, which is
// not in step with the display. Otherwise it is black there until the next frame. On X11; other
// platforms keep the content of all windows.
void prepareGround(const QWindow& window, CoveredContent covered);

} // namespace tarnwick::player
