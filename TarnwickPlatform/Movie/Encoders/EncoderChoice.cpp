#include "TarnwickPlatform/Movie/Encoders/EncoderChoice.h"

#include "TarnwickPlatform/Movie/Encoders/HEVCAlphaEncoder.h"
#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"

namespace tarnwick {

std::unique_ptr<VideoEncoder> makeVideoEncoder(const VideoSettings& settings) {
    switch (settings.codec) {
    case MovieCodec::h264:
    case MovieCodec::hevc:
    case MovieCodec::prores422HQ:
    case MovieCodec::prores4444:
        return makeLibavEncoder(settings);
    case MovieCodec::hevcWithAlpha:
        return makeHEVCAlphaEncoder(settings);
    }
    return nullptr;
}

} // namespace tarnwick
