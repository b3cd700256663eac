// What a movie's tracks are to be.
#pragma once

#include "TarnwickPlatform/Codecs/VideoCodec.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

enum class AlphaKind { straight, premultiplied };

// How long the encoder may seek a better picture of the same size in bytes. `quick` is for a movie
// to look at once: H.264 and HEVC in a part of the time. ProRes has one speed.
enum class EncodingSpeed { usual, quick };

// A picture track: Y'CbCr of Rec. ITU-R BT.709 (primaries, transfer function, matrix) in video
// range, 8 bits a component, 10 for the ProRes codecs.
struct VideoSettings {
    VideoCodec codec = VideoCodec::h264;
    // Pixels, [16, 16384], HEVC: at least 50 x 32. The width is even for all codecs but ProRes
    // 4444, the height for H.264 and HEVC, whose chroma has half of it.
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t framesPerSecond = 0;     // [1, 1000]
    std::int64_t averageBitRate = 0;      // bits a second, above 0; the ProRes codecs pass it over
    std::int64_t maxKeyFrameInterval = 0; // frames, above 0; the ProRes codecs pass it over
    EncodingSpeed speed = EncodingSpeed::usual;
    double alphaQuality = 0.9;                  // [0, 1], for HEVC with alpha
    AlphaKind alpha = AlphaKind::premultiplied; // what HEVC with alpha says of its colours

    // What the input's own pool hands out: pixels, which the writer's threads convert, or what the
    // encoder takes (encoderFormat), for colours that were converted elsewhere.
    enum class Source { pixels, converted };
    Source source = Source::pixels;
    std::int64_t framesInHand = 4; // buffers that the caller may hold besides those appended
    PixelAllocator allocate{};     // the memory of the pool's buffers; the heap's where it is empty
};

// Frames of a stretch: every stretch begins with a key frame and an encoder that knows nothing of
// the frames before, so that a part of a movie that begins where a stretch does, and is written on
// another machine, consists of the same packets as the whole. ProRes: 1.
std::int64_t stretchLength(const VideoSettings& settings);

// A sound track: AAC-LC, two channels.
struct AudioSettings {
    std::int64_t sampleRate = 48000; // samples a second
    std::int64_t channels = 2;
    std::int64_t bitRate = 256000; // bits a second

    // A packet's samples are decoded together with its neighbours', so that the first and the last
    // samples are as good as the others only where the codec knows what lies beside them. Samples
    // for it alone may be appended: so many before sample 0, whole packets, and any behind the
    // first `length`. An edit list takes them off again.
    std::int64_t leadIn = 0;              // [0, 48000]
    std::optional<std::int64_t> length{}; // samples of a channel; absent: all
    static constexpr std::int64_t packet = 1024;
};

struct MovieChapter {
    double start = 0;    // seconds of the movie, [0, its length)
    std::string title{}; // UTF-8

    bool operator==(const MovieChapter&) const = default;
};

} // namespace tarnwick
