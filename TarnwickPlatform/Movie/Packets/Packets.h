// Private to this folder: what lies between encoders and the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick {

// How a picture is encoded: on its own, from pictures before it, from pictures on both sides.
enum class PictureKind { intra, predicted, bidirectional };

// One encoded picture.
struct VideoPacket {
    std::vector<std::byte> bytes{};
    std::int64_t frame = 0; // the picture's place in showing order, counted from the whole's begin
    bool isKeyFrame = false;
    PictureKind kind = PictureKind::intra; // what the encoder reports; intra if it reports nothing
};

struct SoundPacket {
    std::vector<std::byte> bytes{};
    std::int64_t sample = 0;   // at which it begins; the first lies before 0 by the priming
    std::int64_t duration = 0; // samples that are to be heard; fewer in the last one
};

// What a file says of its AAC, beside the settings.
struct SoundFormat {
    std::vector<std::byte> configuration{}; // ISO/IEC 14496-3, AudioSpecificConfig
    std::int64_t priming = 0;               // samples that decoders make before the first
    std::int64_t samplesPerPacket = 1024;
};

} // namespace tarnwick
