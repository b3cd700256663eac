// Makes the encoder of a codec.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"

namespace tarnwick {

// A session for `settings`, which are valid (settingsError). Throws MovieError.
std::unique_ptr<VideoEncoder> makeVideoEncoder(const VideoSettings& settings);

} // namespace tarnwick
