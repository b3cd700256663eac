// Encoded pictures and sound, on their way from encoders to the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick {

// How a picture is encoded: alone, from pictures before it, or from pictures on both sides.
enum class PictureKind { intra, predicted, bidirectional };

// One encoded picture.
struct VideoPacket {
    std::vector<std::byte> bytes{};
    std::int64_t frame = 0; // number in display order, from the start of the whole movie
    bool isKeyFrame = false;
    PictureKind kind = PictureKind::intra; // as the encoder reports it; default: intra
};

struct SoundPacket {
    std::vector<std::byte> bytes{};
    std::int64_t sample = 0;   // number of its first sample; first packet: minus the priming
    std::int64_t duration = 0; // samples that are heard; fewer in the last packet
};

// The properties of AAC in a file that are not settings.
struct SoundFormat {
    std::vector<std::byte> configuration{}; // ISO/IEC 14496-3, AudioSpecificConfig
    std::int64_t priming = 0;               // samples that decoders give before the first
    std::int64_t samplesPerPacket = 1024;
};

} // namespace tarnwick
