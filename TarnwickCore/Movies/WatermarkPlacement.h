// Where the corner watermark sits on a frame.
#pragma once

#include <cstdint>

namespace tarnwick {

struct WatermarkPlacement {
    // A square in pixels from the frame's lower left, y up.
    struct Square {
        float x = 0, y = 0; // its lower left corner
        float side = 0;

        bool operator==(const Square&) const = default;
    };

    // Near the lower right corner of a landscape or square frame. In a portrait frame near the
    // upper left one, where telephones lay no controls of their own.
    static Square rect(std::int64_t width, std::int64_t height);
};

} // namespace tarnwick
