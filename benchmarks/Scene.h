// A picture that moves in steps of 1/60 s. Our scene and the hand-written scene play the same.
#pragma once

#include <cstdint>
#include <vector>

namespace tarnwick::bench {

class Scene {
  public:
    virtual ~Scene() = default;
    // Draws the next frame, from the update to the final picture. Blocks until it is complete.
    virtual void next() = 0;
    // The BGRA bytes of the last frame, rows from the top, without gaps.
    virtual std::vector<std::uint8_t> picture() = 0;
};

inline constexpr std::uint32_t sceneWidth = 1280, sceneHeight = 720; // pixels

} // namespace tarnwick::bench
