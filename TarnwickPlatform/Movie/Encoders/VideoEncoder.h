// Private to this folder: what the writer asks of an encoder, whatever stands behind it.
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

// One encoder session: a stretch. Frames go in in order, packets come out in decoding order, the
// first one a key frame; none refers to a frame of another session. Its packets depend on the
// settings and the frames alone, not on the machine, so numbers of threads that matter to the
// encoder are fixed. One thread calls; the encoder may have threads of its own. Throws MovieError
// with the codec's own words.
class VideoEncoder {
  public:
    virtual ~VideoEncoder() = default;

    // Takes frame number `frame` in the encoder's format; gives the packets that are ready, if any.
    // May keep the picture.
    virtual void encode(std::shared_ptr<const PixelBuffer> picture, std::int64_t frame,
                        const VideoPacketSink& sink) = 0;

    // Gives the packets that are left. Nothing may be encoded any more.
    virtual void finish(const VideoPacketSink& sink) = 0;

    // The parameter sets, as libavformat takes them: behind start codes where the packets have
    // start codes too, or as the container's record (ISO/IEC 14496-15: avcC, hvcC) where the
    // packets' units stand behind lengths of 4 bytes. Complete from the beginning and the same for
    // all sessions of the same settings; empty for ProRes.
    virtual std::vector<std::byte> configuration() const = 0;

    // How many frames decoding runs ahead of showing, the same for all sessions of the same
    // settings: the k-th packet of a movie is decoded at frame time k - delay.
    virtual std::int64_t delay() const = 0;
};

} // namespace tarnwick
