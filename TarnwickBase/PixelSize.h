// The size of a picture, a window or a frame.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace tarnwick {

struct PixelSize {
    std::uint32_t width = 0, height = 0; // pixels

    bool operator==(const PixelSize&) const = default;

    // Absent for a side below 1 or above 32 bits. A device may support less.
    static std::optional<PixelSize> of(std::int64_t width, std::int64_t height) {
        constexpr std::int64_t maximum = std::numeric_limits<std::uint32_t>::max();
        if (width < 1 || height < 1 || width > maximum || height > maximum)
            return std::nullopt;
        return PixelSize{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
    }
};

} // namespace tarnwick
