// Private to this folder: samples in, AAC packets out.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace tarnwick {

struct SoundPacket {
    std::vector<std::byte> bytes{};
    std::int64_t sample = 0;   // at which it begins; the first lies before 0 by the priming
    std::int64_t duration = 0; // samples that are to be heard; fewer in the last one
};

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

    std::vector<std::byte> configuration() const; // ISO/IEC 14496-3, AudioSpecificConfig
    std::int64_t priming() const;                 // samples that decoders make before the first
    std::int64_t samplesPerPacket() const;

  private:
    struct Session;
    std::unique_ptr<Session> session;
};

} // namespace tarnwick
