// The place of the watermark in the corner of a frame.
#pragma once

#include <cstdint>

namespace tarnwick {

struct WatermarkPlacement {
    // A square in pixels; the origin is the lower left corner of the frame, y points up.
    struct Square {
        float x = 0, y = 0; // its lower left corner
        float side = 0;

        bool operator==(const Square&) const = default;
    };

    // Near the lower right corner of a landscape or square frame. Near the upper left corner of a
    // portrait frame, where telephones show no controls.
    static Square rect(std::int64_t width, std::int64_t height);
};

} // namespace tarnwick
