// The formats that a movie can be exported in, by name.
#pragma once

#include "TarnwickCore/Movies/VideoCodec.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace tarnwick {

struct ExportPreset {
    std::string_view id;      // stable; the texts are the program's own, and outlive every copy
    std::string_view name;    // for people
    std::int64_t width = 0;   // pixels
    std::int64_t height = 0;  // pixels
    std::int64_t fps = 0;     // frames a second
    std::int64_t bitrate = 0; // average of the picture, bits a second; 0 where the codec takes none
    VideoCodec codec = VideoCodec::h264;

    bool operator==(const ExportPreset&) const = default;

    // "mov" or "mp4".
    std::string_view fileExtension() const { return isQuickTime(codec) ? "mov" : "mp4"; }
    // A copy with another bit rate, whatever its value.
    ExportPreset withBitrate(std::int64_t other) const;

    // Everyday formats.
    static const ExportPreset main4K, web, preview, site, square, vertical;
    // High-end formats.
    static const ExportPreset prores422, prores4444, hevcAlpha, uhd120, fiveK;
    static std::span<const ExportPreset> all(); // the everyday ones, in that order
    static std::span<const ExportPreset> pro(); // the high-end ones, in that order

    // The preset whose id is exactly that.
    static std::optional<ExportPreset> named(std::string_view id);
};

} // namespace tarnwick
