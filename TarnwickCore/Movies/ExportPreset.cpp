#include "TarnwickCore/Movies/ExportPreset.h"

#include <array>

namespace tarnwick {

namespace {

// clang-format off
constexpr std::array everyday{
    ExportPreset{"main4k", "Main video · 3840×2160 · 60 fps",
                 3840, 2160, 60, 60'000'000, VideoCodec::hevc},
    ExportPreset{"web", "Web video · 1920×1080 · 60 fps",
                 1920, 1080, 60, 5'000'000, VideoCodec::h264},
    ExportPreset{"preview", "Preview · 1920×1080 · 60 fps",
                 1920, 1080, 60, 20'000'000, VideoCodec::h264},
    ExportPreset{"site", "Site capture · 1280×720 · 30 fps",
                 1280, 720, 30, 6'000'000, VideoCodec::h264},
    ExportPreset{"square", "Social, square · 1080×1080 · 30 fps",
                 1080, 1080, 30, 8'000'000, VideoCodec::h264},
    ExportPreset{"vertical", "Social, vertical · 1080×1920 · 30 fps",
                 1080, 1920, 30, 8'000'000, VideoCodec::h264},
};
constexpr std::array highEnd{
    ExportPreset{"prores422", "ProRes 422 HQ · 3840×2160 · 60 fps",
                 3840, 2160, 60, 0, VideoCodec::prores422},
    ExportPreset{"prores4444", "ProRes 4444, transparent · 3840×2160 · 60 fps",
                 3840, 2160, 60, 0, VideoCodec::prores4444},
    ExportPreset{"hevcalpha", "HEVC, transparent · 3840×2160 · 60 fps",
                 3840, 2160, 60, 60'000'000, VideoCodec::hevcAlpha},
    ExportPreset{"uhd120", "High frame rate · 3840×2160 · 120 fps",
                 3840, 2160, 120, 100'000'000, VideoCodec::hevc},
    ExportPreset{"5k", "5K · 5120×2880 · 60 fps",
                 5120, 2880, 60, 100'000'000, VideoCodec::hevc},
};
// clang-format on

constexpr std::optional<ExportPreset> presetNamed(std::string_view id) {
    for (const std::span<const ExportPreset> presets :
         {std::span<const ExportPreset>(everyday), std::span<const ExportPreset>(highEnd)})
        for (const ExportPreset& preset : presets)
            if (preset.id == id)
                return preset;
    return std::nullopt;
}

} // namespace

constexpr ExportPreset ExportPreset::main4K = presetNamed("main4k").value();
constexpr ExportPreset ExportPreset::web = presetNamed("web").value();
constexpr ExportPreset ExportPreset::preview = presetNamed("preview").value();
constexpr ExportPreset ExportPreset::site = presetNamed("site").value();
constexpr ExportPreset ExportPreset::square = presetNamed("square").value();
constexpr ExportPreset ExportPreset::vertical = presetNamed("vertical").value();
constexpr ExportPreset ExportPreset::prores422 = presetNamed("prores422").value();
constexpr ExportPreset ExportPreset::prores4444 = presetNamed("prores4444").value();
constexpr ExportPreset ExportPreset::hevcAlpha = presetNamed("hevcalpha").value();
constexpr ExportPreset ExportPreset::uhd120 = presetNamed("uhd120").value();
constexpr ExportPreset ExportPreset::fiveK = presetNamed("5k").value();

ExportPreset ExportPreset::withBitrate(std::int64_t other) const {
    ExportPreset changed = *this;
    changed.bitrate = other;
    return changed;
}

std::span<const ExportPreset> ExportPreset::all() {
    return everyday;
}

std::span<const ExportPreset> ExportPreset::pro() {
    return highEnd;
}

std::optional<ExportPreset> ExportPreset::named(std::string_view id) {
    return presetNamed(id);
}

} // namespace tarnwick
