// A picture that moves in steps of a sixtieth of a second: ours and the hand-written one play the
// same.
#pragma once

#include <cstdint>
#include <vector>

namespace tarnwick::bench {

class Scene {
  public:
    virtual ~Scene() = default;
    // Draws the next frame whole, from the update to the final picture, and blocks until it is
    // there.
    virtual void next() = 0;
    // The last frame's BGRA bytes, rows from the top, without gaps.
    virtual std::vector<std::uint8_t> picture() = 0;
};

inline constexpr std::uint32_t sceneWidth = 1280, sceneHeight = 720; // pixels

} // namespace tarnwick::bench
