#include "TarnwickCore/Movies/WatermarkPlacement.h"

#include <algorithm>

namespace tarnwick {

WatermarkPlacement::Square WatermarkPlacement::rect(std::int64_t width, std::int64_t height) {
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(height);
    const float side = std::min(w, h) * 0.11f;
    const float dx = side * 0.23f, dy = side * 0.33f, half = side * 0.5f;
    const bool isPortrait = width < height;
    const float centreX = isPortrait ? w * 0.06f + dx : w - w * 0.03f - dx;
    const float centreY = isPortrait ? h - (h * 0.09f + dy) : h * 0.04f + dy;
    return {.x = centreX - half, .y = centreY - half, .side = side};
}

} // namespace tarnwick
