#include "TarnwickCore/Movies/VideoCodec.h"

#include <cstddef>

namespace tarnwick {
namespace {

struct Row {
    std::string_view rawValue;
    bool hasAlpha, isQuickTime, isProRes;
};

// clang-format off
constexpr std::array<Row, allVideoCodecs.size()> rows{{
    {"h264",       false, false, false},
    {"hevc",       false, false, false},
    {"prores422",  false, true,  true},
    {"prores4444", true,  true,  true},
    {"hevcAlpha",  true,  true,  false},
}};
// clang-format on

const Row& rowOf(VideoCodec codec) {
    return rows[static_cast<std::size_t>(codec)];
}

} // namespace

std::string_view rawValue(VideoCodec codec) {
    return rowOf(codec).rawValue;
}

std::optional<VideoCodec> videoCodecNamed(std::string_view rawValue) {
    for (const VideoCodec codec : allVideoCodecs)
        if (rowOf(codec).rawValue == rawValue)
            return codec;
    return std::nullopt;
}

bool hasAlpha(VideoCodec codec) {
    return rowOf(codec).hasAlpha;
}

bool isQuickTime(VideoCodec codec) {
    return rowOf(codec).isQuickTime;
}

bool isProRes(VideoCodec codec) {
    return rowOf(codec).isProRes;
}

} // namespace tarnwick
