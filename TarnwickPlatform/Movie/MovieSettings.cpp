#include "TarnwickPlatform/Movie/MovieSettings.h"

#include "TarnwickBase/Precondition.h"

namespace tarnwick {

PixelFormat encoderFormat(MovieCodec codec) {
    switch (codec) {
    case MovieCodec::h264:
    case MovieCodec::hevc:
        return PixelFormat::ycbcr420;
    case MovieCodec::prores422HQ:
        return PixelFormat::ycbcr422x10;
    case MovieCodec::prores4444:
        return PixelFormat::ycbcra444x10;
    case MovieCodec::hevcWithAlpha:
        return PixelFormat::ycbcra420;
    }
    precondition(false, "A codec is one of the enumeration's.");
    return PixelFormat::bgra;
}

bool isProRes(MovieCodec codec) {
    return codec == MovieCodec::prores422HQ || codec == MovieCodec::prores4444;
}

std::int64_t stretchLength(const VideoSettings& settings) {
    constexpr std::int64_t keyFrameIntervals = 5;
    return isProRes(settings.codec) ? 1 : keyFrameIntervals * settings.maxKeyFrameInterval;
}

} // namespace tarnwick
