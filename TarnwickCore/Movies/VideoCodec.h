// The codecs that a movie's pictures may have.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

enum class VideoCodec : std::uint8_t { h264, hevc, prores422, prores4444, hevcAlpha };

inline constexpr std::array allVideoCodecs{VideoCodec::h264, VideoCodec::hevc,
                                           VideoCodec::prores422, VideoCodec::prores4444,
                                           VideoCodec::hevcAlpha};

// The case's own name.
std::string_view rawValue(VideoCodec codec);
// Accepts exactly those five names.
std::optional<VideoCodec> videoCodecNamed(std::string_view rawValue);

bool hasAlpha(VideoCodec codec);
bool isQuickTime(VideoCodec codec); // lies in a QuickTime movie, else in MPEG-4
bool isProRes(VideoCodec codec);

} // namespace tarnwick
