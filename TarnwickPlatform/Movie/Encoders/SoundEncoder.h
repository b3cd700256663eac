// Encodes samples to AAC packets.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <functional>
#include <memory>
#include <span>

namespace tarnwick {

using SoundPacketSink = std::function<void(SoundPacket)>;

// AAC-LC by libavcodec. One thread calls. Throws MovieError with the codec's own words.
class SoundEncoder {
  public:
    explicit SoundEncoder(const AudioSettings& settings);
    ~SoundEncoder();

    // Takes interleaved samples, which begin where the last call's ended.
    void encode(std::span<const float> samples, const SoundPacketSink& sink);

    // Gives the remaining packets. The last call.
    void finish(const SoundPacketSink& sink);

    SoundFormat format() const;

  private:
    struct Session;
    std::unique_ptr<Session> session;
};

} // namespace tarnwick
