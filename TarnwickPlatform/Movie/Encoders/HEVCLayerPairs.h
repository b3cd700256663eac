// Private to this folder: the packets of two encoders, of colour and of alpha, as one stream's.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"
#include "TarnwickPlatform/Movie/HEVC/LayeredStream.h"

#include <deque>
#include <functional>

namespace tarnwick::hevc {

// Pairs each packet of colour with alpha's packet of the same picture. Where two packets differ in
// their picture or its kind, the pictures that are left up to the next key frame are decoded from
// the packets and encoded again, each from those before it (encodedInOrder): that costs some
// quality there, and no work is lost. Packets since the last key frame are kept for that.
class LayerPairs {
  public:
    // New encoders of the settings that the packets were made with.
    struct Encoders {
        std::function<std::unique_ptr<LibavEncoder>()> colour, alpha;
    };

    LayerPairs(LayeredStream stream, Encoders encoders)
        : stream(std::move(stream)), encoders(std::move(encoders)) {}

    // In decoding order, a key frame first; no picture refers to one before the last key frame.
    void putColour(VideoPacket packet) { colour.waiting.push_back(std::move(packet)); }
    void putAlpha(VideoPacket packet) { alpha.waiting.push_back(std::move(packet)); }

    // Gives what can be given by now. Throws MovieError.
    void give(const VideoPacketSink& sink) { give(sink, More::isComing); }
    // The same of the rest, after the last packet of each encoder.
    void finish(const VideoPacketSink& sink);

    std::vector<std::byte> configuration() const;

  private:
    enum class More { isComing, isNotComing };

    struct Layer {
        std::deque<VideoPacket> waiting;
        std::vector<VideoPacket> group; // that were taken since the last key frame, it included

        void beginGroup();
        void take();
        void takeUntil(std::int64_t end);
    };

    void give(const VideoPacketSink& sink, More more);
    bool nextFit() const;
    void takePair();
    void giveHeld(const VideoPacketSink& sink);
    std::optional<std::int64_t> groupEnd(More more) const;
    void giveAgain(const VideoPacketSink& sink, std::int64_t end);
    VideoPacket paired(const VideoPacket& colour, const VideoPacket& alpha) const;

    const LayeredStream stream;
    const Encoders encoders;
    Layer colour, alpha;
    std::vector<VideoPacket> held; // pairs that are shown after one that has not been taken
    std::int64_t groupBegin = 0;   // the first frame of the group
    std::int64_t greatest = 0;     // frame of the group's pairs
};

} // namespace tarnwick::hevc
