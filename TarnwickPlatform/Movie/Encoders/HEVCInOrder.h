// Encodes pictures again, with kinds that do not depend on the encoder.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"

#include <span>

namespace tarnwick::hevc {

// Decodes `group`, the packets from a key frame up to the next one, and encodes its pictures from
// frame `first` on with `encoder`, a new one of the same settings: a key frame, then P-frames. So
// the packets are in the order of the frames for any content. Throws MovieError.
std::vector<VideoPacket> encodedInOrder(std::span<const VideoPacket> group, std::int64_t first,
                                        LibavEncoder& encoder);

} // namespace tarnwick::hevc
