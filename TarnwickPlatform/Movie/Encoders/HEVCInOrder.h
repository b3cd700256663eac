// Private to this folder: encodes pictures again so that nothing is left for an encoder to choose.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"

#include <span>

namespace tarnwick::hevc {

// Decodes `group`, packets from a key frame up to the next one, and encodes its pictures from frame
// `first` on with `encoder`, a new one of the same settings: a key frame, then each picture from
// those before it. So the packets come in the order of the frames, whatever the pictures hold.
// Throws MovieError.
std::vector<VideoPacket> encodedInOrder(std::span<const VideoPacket> group, std::int64_t first,
                                        LibavEncoder& encoder);

} // namespace tarnwick::hevc
