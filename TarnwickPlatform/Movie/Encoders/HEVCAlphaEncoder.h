// Private to this folder: HEVC with alpha, by two encoders whose streams become two layers of one.
//
// libx265 knows no alpha, so one encoder takes the colours and another a picture whose luma is the
// alpha (full range) and whose chroma is 128. Colour's encoder decides how each picture is encoded
// (key frame, P or B); alpha's waits for that and is told to do the same, so their packets pair up.
// Each pair is checked, and encoded again where it does not fit (LayerPairs).
//
// The average bit rate is that of both layers together: colour is given 95% of it, and alpha takes
// what its quality needs, 10% at most. Of 1 Mb/s the two take 1.04 where all is opaque noise
// and 1.17 where alpha is noise as well (300 frames of 320x180, 5 seconds). A quality q stops
// alpha's quantiser at 51 (1 - q), which 0.9 makes 5 of 51: near lossless while a tenth of the bits
// suffices.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/VideoEncoder.h"

namespace tarnwick {

// Takes pictures of ycbcra420. Throws MovieError.
std::unique_ptr<VideoEncoder> makeHEVCAlphaEncoder(const VideoSettings& settings);

} // namespace tarnwick
