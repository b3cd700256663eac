#include "TarnwickCore/Movies/ExportPreset.h"

#include <array>

namespace tarnwick {

// clang-format off
constexpr ExportPreset ExportPreset::main4K{
    "main4k", "Main video · 3840×2160 · 60 fps", 3840, 2160, 60, 60'000'000, VideoCodec::hevc};
constexpr ExportPreset ExportPreset::web{
    "web", "Web video · 1920×1080 · 60 fps", 1920, 1080, 60, 5'000'000, VideoCodec::h264};
constexpr ExportPreset ExportPreset::preview{
    "preview", "Preview · 1920×1080 · 60 fps", 1920, 1080, 60, 20'000'000, VideoCodec::h264};
constexpr ExportPreset ExportPreset::site{
    "site", "Site capture · 1280×720 · 30 fps", 1280, 720, 30, 6'000'000, VideoCodec::h264};
constexpr ExportPreset ExportPreset::square{
    "square", "Social, square · 1080×1080 · 30 fps", 1080, 1080, 30, 8'000'000, VideoCodec::h264};
constexpr ExportPreset ExportPreset::vertical{
    "vertical", "Social, vertical · 1080×1920 · 30 fps", 1080, 1920, 30, 8'000'000,
    VideoCodec::h264};
constexpr ExportPreset ExportPreset::prores422{
    "prores422", "ProRes 422 HQ · 3840×2160 · 60 fps", 3840, 2160, 60, 0, VideoCodec::prores422};
constexpr ExportPreset ExportPreset::prores4444{
    "prores4444", "ProRes 4444, transparent · 3840×2160 · 60 fps", 3840, 2160, 60, 0,
    VideoCodec::prores4444};
constexpr ExportPreset ExportPreset::hevcAlpha{
    "hevcalpha", "HEVC, transparent · 3840×2160 · 60 fps", 3840, 2160, 60, 60'000'000,
    VideoCodec::hevcAlpha};
constexpr ExportPreset ExportPreset::uhd120{
    "uhd120", "High frame rate · 3840×2160 · 120 fps", 3840, 2160, 120, 100'000'000,
    VideoCodec::hevc};
constexpr ExportPreset ExportPreset::fiveK{
    "5k", "5K · 5120×2880 · 60 fps", 5120, 2880, 60, 100'000'000, VideoCodec::hevc};
// clang-format on

ExportPreset ExportPreset::withBitrate(std::int64_t other) const {
    ExportPreset changed = *this;
    changed.bitrate = other;
    return changed;
}

std::span<const ExportPreset> ExportPreset::all() {
    static constexpr std::array presets{main4K, web, preview, site, square, vertical};
    return presets;
}

std::span<const ExportPreset> ExportPreset::pro() {
    static constexpr std::array presets{prores422, prores4444, hevcAlpha, uhd120, fiveK};
    return presets;
}

std::optional<ExportPreset> ExportPreset::named(std::string_view id) {
    for (const auto& presets : {all(), pro()})
        for (const ExportPreset& preset : presets)
            if (preset.id == id)
                return preset;
    return std::nullopt;
}

} // namespace tarnwick
