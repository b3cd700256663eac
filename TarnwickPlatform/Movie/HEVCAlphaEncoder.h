// Private to this folder: HEVC with alpha, by two encoders whose streams become two layers of one.
//
// libx265 knows no alpha, so one encoder takes the colours and another a picture whose luma is the
// alpha (full range) and whose chroma is 128. Both are kept from choosing where key frames and
// B-frames lie, and so give packets that pair up; that they do is checked with each.
//
// The average bit rate is that of both layers together: colour is given 95% of it, and alpha takes
// what its quality needs, 10% at most. Against 1 Mb/s the two came to 0.97 where all is opaque and
// to 1.07 where alpha is as rich as the colours (300 noisy frames of 320x180). A quality q stops
// alpha's quantiser at 51 (1 - q), which 0.9 makes 5 of 51: near lossless while a tenth of the bits
// suffices.
#pragma once

#include "TarnwickPlatform/Movie/VideoEncoder.h"

namespace tarnwick {

// Takes pictures of ycbcra420. Throws MovieError.
std::unique_ptr<VideoEncoder> makeHEVCAlphaEncoder(const VideoSettings& settings);

} // namespace tarnwick
