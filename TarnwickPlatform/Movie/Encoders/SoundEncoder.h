// Private to this folder: samples in, AAC packets out.
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

    // Takes samples of all channels by turns that begin where the last ended.
    void encode(std::span<const float> samples, const SoundPacketSink& sink);

    // Gives what is left.
    void finish(const SoundPacketSink& sink);

    SoundFormat format() const;

  private:
    struct Session;
    std::unique_ptr<Session> session;
};

} // namespace tarnwick
