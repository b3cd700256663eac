// Makes the packets of one stream from those of two encoders, of colour and of alpha.
#pragma once

#include "TarnwickPlatform/Movie/Encoders/LibavEncoder.h"
#include "TarnwickPlatform/Movie/HEVC/LayeredStream.h"

#include <deque>
#include <functional>

namespace tarnwick::hevc {

// Pairs each packet of colour with alpha's packet of the same picture. If two packets differ in
// their picture or its kind, the pictures from there up to the next key frame are decoded from the
// packets and encoded again, each from those before it (encodedInOrder). They lose some quality;
// the export goes on. Packets since the last key frame are kept for that.
class LayerPairs {
  public:
    // Make new encoders with the settings of those that made the packets.
    struct Encoders {
        std::function<std::unique_ptr<LibavEncoder>()> colour, alpha;
    };

    LayerPairs(LayeredStream stream, Encoders encoders)
        : stream(std::move(stream)), encoders(std::move(encoders)) {}

    // Take packets in decoding order, a key frame first; no picture refers to one before the last
    // key frame.
    void putColour(VideoPacket packet) { colour.waiting.push_back(std::move(packet)); }
    void putAlpha(VideoPacket packet) { alpha.waiting.push_back(std::move(packet)); }

    // Gives the packets that are complete. Throws MovieError.
    void give(const VideoPacketSink& sink) { give(sink, More::isComing); }
    // Gives the remaining packets, after the last packet of each encoder. Throws MovieError.
    void finish(const VideoPacketSink& sink);

    std::vector<std::byte> configuration() const;

  private:
    enum class More { isComing, isNotComing };

    struct Layer {
        std::deque<VideoPacket> waiting;
        std::vector<VideoPacket> group; // taken since the last key frame, including it

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
    std::vector<VideoPacket> held; // pairs that are displayed after one that has not been taken
    std::int64_t groupBegin = 0;   // the first frame of the group
    std::int64_t greatest = 0;     // greatest frame of the group's pairs
};

} // namespace tarnwick::hevc
