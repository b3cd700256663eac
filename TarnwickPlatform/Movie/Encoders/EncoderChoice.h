// Private to this folder: the encoder of a codec.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"

namespace tarnwick {

// An encoder for `settings`, which a MovieWriter has found acceptable. Throws MovieError.
std::unique_ptr<VideoEncoder> makeVideoEncoder(const VideoSettings& settings);

} // namespace tarnwick
