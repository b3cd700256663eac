// The settings of a movie's tracks.
#pragma once

#include "TarnwickPlatform/Codecs/VideoCodec.h"
#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

enum class AlphaKind { straight, premultiplied };

// How much time the encoder takes for a better picture of the same size in bytes. `quick` is for
// drafts: H.264 and HEVC take less time. Ignored by intra-only codecs.
enum class EncodingSpeed { usual, quick };

// A picture track: Y'CbCr of Rec. ITU-R BT.709 (primaries, transfer function, matrix) in video
// range, in the pixel format of the codec's row.
struct VideoSettings {
    VideoCodec codec = VideoCodec::h264;
    // Pixels, up to 16384; the codec's row has the least size. Even where the pixel format's chroma
    // is halved: the width for all codecs but ProRes 4444, the height for H.264 and HEVC.
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t framesPerSecond = 0;     // [1, 1000]
    std::int64_t averageBitRate = 0;      // bits a second, [1, 2e9]; ignored by intra-only codecs
    std::int64_t maxKeyFrameInterval = 0; // frames, [1, 100000]; ignored by intra-only codecs
    EncodingSpeed speed = EncodingSpeed::usual;
    double alphaQuality = 0.9;                  // [0, 1], for HEVC with alpha
    AlphaKind alpha = AlphaKind::premultiplied; // of HEVC with alpha; stored in the file

    // The format of the buffers in the input's pool: bgra, which the writer's threads convert, or
    // the encoder's format, for colours that the caller has converted.
    enum class Source { pixels, converted };
    Source source = Source::pixels;
    std::int64_t framesInHand = 4; // buffers that the caller may hold before appending
    PixelAllocator allocate{};     // memory of the pool's buffers; default: the heap
};

// The number of frames of a stretch. Each begins with a key frame and a new encoder: a part of a
// movie from a multiple of this length on has the packets of the whole, on any machine. 1 for
// intra-only codecs.
std::int64_t stretchLength(const VideoSettings& settings);

// A sound track: AAC-LC, two channels.
struct AudioSettings {
    std::int64_t sampleRate = 48000; // samples a second
    std::int64_t channels = 2;
    std::int64_t bitRate = 256000; // bits a second

    // A packet is decoded together with its neighbours, so the first and last samples are as good
    // as the others only if the codec gets samples beyond them. The caller may append such samples:
    // `leadIn` of them before sample 0, in whole packets, and any number after the first `length`.
    // An edit list removes them again.
    std::int64_t leadIn = 0;              // [0, 48000], a multiple of `packet`
    std::optional<std::int64_t> length{}; // samples of a channel; default: all
    static constexpr std::int64_t packet = 1024;
};

struct MovieChapter {
    double start = 0;    // seconds of the movie, [0, its length)
    std::string title{}; // UTF-8

    bool operator==(const MovieChapter&) const = default;
};

} // namespace tarnwick
