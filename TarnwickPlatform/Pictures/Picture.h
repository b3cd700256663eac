// A picture in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick {

// Rows from the top, `bytesPerRow` bytes apart, of pixels of four bytes: blue, green, red, and one
// that is ignored, unless a function takes it as alpha. Colours are sRGB (IEC 61966-2-1).
struct Picture {
    std::uint32_t width = 0;     // pixels
    std::uint32_t height = 0;    // pixels
    std::size_t bytesPerRow = 0; // at least 4 * width
    std::vector<std::uint8_t> bytes{};

    bool operator==(const Picture&) const = default;
};

} // namespace tarnwick
