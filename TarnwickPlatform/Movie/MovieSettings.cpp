#include "TarnwickPlatform/Movie/MovieSettings.h"

namespace tarnwick {

std::int64_t stretchLength(const VideoSettings& settings) {
    constexpr std::int64_t keyFrameIntervals = 5;
    return videoCodecRow(settings.codec).isIntraOnly
               ? 1
               : keyFrameIntervals * settings.maxKeyFrameInterval;
}

} // namespace tarnwick
