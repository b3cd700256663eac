#include "TarnwickPlatform/Movie/Encoders/EncoderChoice.h"

#include "TarnwickPlatform/Movie/Encoders/HEVCAlphaEncoder.h"
#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"

namespace tarnwick {

std::unique_ptr<VideoEncoder> makeVideoEncoder(const VideoSettings& settings) {
    switch (videoCodecRow(settings.codec).encoderKind) {
    case EncoderKind::plain:
        return makeLibavEncoder(settings);
    case EncoderKind::alphaLayer:
        return makeHEVCAlphaEncoder(settings);
    }
    return nullptr;
}

} // namespace tarnwick
