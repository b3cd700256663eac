// Encodes HEVC with alpha by two encoders, whose streams become two layers of one.
//
// libx265 does not encode alpha, so one encoder takes the colours and another a picture whose luma
// is the alpha (full range) and whose chroma is 128. The encoder of colour chooses the kind of each
// picture (key frame, P or B); then the encoder of alpha is given the same kind, so that their
// packets pair up. Each pair is checked, and encoded again if it does not fit (LayerPairs).
//
// The average bit rate is that of both layers. Colour gets 95% of it. Alpha takes the bits that
// its quality needs, at most 10%. At 1 Mb/s the layers take 1.04 Mb/s for opaque noise and 1.17
// Mb/s if alpha is noise too (300 frames of 320x180, 5 seconds). A quality q limits alpha's
// quantiser to at least 51 (1 - q), which is 5 for 0.9: nearly lossless as long as a tenth of the
// bits suffices.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"

namespace tarnwick {

// A session that takes pictures in ycbcra420. Throws MovieError.
std::unique_ptr<VideoEncoder> makeHEVCAlphaEncoder(const VideoSettings& settings);

} // namespace tarnwick
