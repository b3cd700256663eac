// The interface of encoders of pictures.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

using VideoPacketSink = std::function<void(VideoPacket)>;

// One encoder session, which encodes a stretch. It takes frames in their order and gives packets in
// decoding order; the first is a key frame, and none refers to a frame of another session. Packets
// depend on the settings and the frames alone, not on the machine, so the number of threads is
// fixed where the encoder's choices depend on it. One thread calls; the encoder may have threads of
// its own. Throws MovieError with the codec's own words.
class VideoEncoder {
  public:
    virtual ~VideoEncoder() = default;

    // Takes frame number `frame` in the encoder's format and gives the packets that are ready, if
    // any. May keep the picture.
    virtual void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                        const VideoPacketSink& sink) = 0;

    // Gives the remaining packets. The last call.
    virtual void finish(const VideoPacketSink& sink) = 0;

    // The parameter sets, as libavformat takes them: with start codes if the packets have start
    // codes, otherwise (each unit of a packet has a length of 4 bytes before it) as the container's
    // record (ISO/IEC 14496-15: avcC, hvcC). Available from the first call on and the same for all
    // sessions of the same settings; empty for ProRes.
    virtual std::vector<std::byte> configuration() const = 0;

    // The number of frames by which decoding runs ahead of display: packet k of a movie is decoded
    // at frame time k - delay. The same for all sessions of the same settings.
    virtual std::int64_t delay() const = 0;
};

} // namespace tarnwick
