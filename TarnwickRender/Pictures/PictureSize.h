// A picture's size as the GPU layer counts it.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace tarnwick {

struct PictureSize {
    std::uint32_t width = 1, height = 1; // pixels

    // Nothing for a side below 1 or beyond 32 bits; what a device takes is for it to say.
    static std::optional<PictureSize> of(std::int64_t width, std::int64_t height) {
        constexpr std::int64_t most = std::numeric_limits<std::uint32_t>::max();
        if (width < 1 || height < 1 || width > most || height > most)
            return std::nullopt;
        return PictureSize{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    }
};

} // namespace tarnwick
