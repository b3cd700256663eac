// The formats of exported movies, by name.
#pragma once

#include "TarnwickPlatform/Codecs/VideoCodec.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tarnwick {

struct ExportPreset {
    std::string_view id;      // stable; static text, as is the name
    std::string_view name;    // for people
    std::int64_t width = 0;   // pixels
    std::int64_t height = 0;  // pixels
    std::int64_t fps = 0;     // frames per second
    std::int64_t bitrate = 0; // average of the video track, bits/s; 0: not used by the codec
    VideoCodec codec = VideoCodec::h264;

    bool operator==(const ExportPreset&) const = default;

    // Of the files of the codec, without a dot: "mov" or "mp4".
    std::string_view fileExtension() const {
        return endingOf(fileKind(videoCodecRow(codec).fileType)).substr(1);
    }
    // A copy with another bit rate, which is not checked.
    ExportPreset withBitrate(std::int64_t other) const;

    // Everyday formats.
    static const ExportPreset main4K, web, preview, site, square, vertical;
    // High-end formats.
    static const ExportPreset prores422, prores4444, hevcAlpha, uhd120, fiveK;
    // All of each group, in the order of the tables in ExportPreset.cpp. A preset that no code
    // names needs only a row there.
    static std::span<const ExportPreset> all(); // everyday
    static std::span<const ExportPreset> pro(); // high-end

    // The preset with exactly this id.
    static std::optional<ExportPreset> named(std::string_view id);
};

} // namespace tarnwick
