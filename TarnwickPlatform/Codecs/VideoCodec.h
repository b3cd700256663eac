// The codecs of a movie's video: one row for each. Presets, the movie writer, joining and the
// command line read these rows and have no list of codecs of their own.
#pragma once

#include "TarnwickBase/FileKind.h"
#include "TarnwickPlatform/Codecs/PixelFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

enum class VideoCodec : std::uint8_t {
    h264,       // H.264 High
    hevc,       // HEVC Main
    prores422,  // ProRes 422 HQ
    prores4444, // ProRes 4444 with 16 bits of alpha
    hevcAlpha,  // HEVC Main with alpha as an auxiliary layer
    count,      // not a codec
};

enum class MovieFileType : std::uint8_t { quickTime, mpeg4 };

constexpr FileKind fileKind(MovieFileType type) {
    return type == MovieFileType::quickTime ? FileKind::quickTimeMovie : FileKind::mpeg4Movie;
}

// How a codec's stream is made. TarnwickPlatform/Movie/Encoders/EncoderChoice.cpp chooses the
// class.
enum class EncoderKind : std::uint8_t {
    plain,      // by one encoder
    alphaLayer, // by two encoders, of colour and of alpha, whose streams become two layers of one
};

struct VideoCodecRow {
    VideoCodec codec;
    std::string_view name;     // raw value of the codec
    std::string_view standard; // in sentences: "H.264"

    // The file.
    MovieFileType fileType;       // of exports
    bool isQuickTimeOnly = false; // otherwise the writer takes both file types
    std::string_view tag;         // four letters: the type of the track's sample entry

    // The pictures.
    PixelFormat pixelFormat; // that the encoder takes; its planes say whether there is alpha
    int leastWidth = 16;     // pixels
    int leastHeight = 16;

    // The encoder.
    EncoderKind encoderKind = EncoderKind::plain;
    const char* encoder; // libavcodec's name
    // libavcodec's options, "name=value:...", of `plain` encoders; after the speed's.
    const char* options = "";
    const char* usualSpeed = ""; // option of EncodingSpeed::usual
    const char* quickSpeed = "";
    // Each frame is encoded alone, at a fixed quality: bit rate, key frame interval and speed are
    // ignored, and every frame begins a stretch.
    bool isIntraOnly = false;
    double colourShare = 1; // of the average bit rate
    double alphaShare = 0;  // of the average bit rate, at most
};

// Numbers of threads on which the packets of x264 and x265 depend are fixed here: x265 3.5 with
// several frame threads and cutree gives different packets in each run, and others with a pool
// of less than four threads. ProRes' profile 3 is 422 HQ.
//
// libx265 3.5 writes past its memory where cutree handles rows of less than four 16x16 blocks, that
// is below 50 pixels (valgrind finds it at all even widths up to 48, whatever the height), and
// below 32 pixels it has no coding blocks that its higher levels take.
inline constexpr std::array videoCodecRows{
    VideoCodecRow{
        .codec = VideoCodec::h264,
        .name = "h264",
        .standard = "H.264",
        .fileType = MovieFileType::mpeg4,
        .tag = "avc1",
        .pixelFormat = PixelFormat::ycbcr420,
        .encoder = "libx264",
        .options = "profile=high:x264-params=threads=6\\:lookahead-threads=1\\:ratetol=0.1",
        .usualSpeed = "preset=medium:",
        .quickSpeed = "preset=superfast:",
    },
    VideoCodecRow{
        .codec = VideoCodec::hevc,
        .name = "hevc",
        .standard = "HEVC",
        .fileType = MovieFileType::mpeg4,
        .tag = "hvc1",
        .pixelFormat = PixelFormat::ycbcr420,
        .leastWidth = 50,
        .leastHeight = 32,
        .encoder = "libx265",
        .options = "profile=main:x265-params=frame-threads=1\\:pools=16\\:log-level=none\\:info=0"
                   "\\:open-gop=0",
        .usualSpeed = "preset=medium:",
        .quickSpeed = "preset=superfast:",
    },
    VideoCodecRow{
        .codec = VideoCodec::prores422,
        .name = "prores422",
        .standard = "ProRes",
        .fileType = MovieFileType::quickTime,
        .isQuickTimeOnly = true,
        .tag = "apch",
        .pixelFormat = PixelFormat::ycbcr422x10,
        .encoder = "prores_aw",
        .options = "profile=3",
        .isIntraOnly = true,
    },
    VideoCodecRow{
        .codec = VideoCodec::prores4444,
        .name = "prores4444",
        .standard = "ProRes",
        .fileType = MovieFileType::quickTime,
        .isQuickTimeOnly = true,
        .tag = "ap4h",
        .pixelFormat = PixelFormat::ycbcra444x10,
        .encoder = "prores_ks",
        .options = "profile=4444:alpha_bits=16:quant_mat=default",
        .isIntraOnly = true,
    },
    VideoCodecRow{
        .codec = VideoCodec::hevcAlpha,
        .name = "hevcAlpha",
        .standard = "HEVC",
        .fileType = MovieFileType::quickTime,
        .tag = "hvc1",
        .pixelFormat = PixelFormat::ycbcra420,
        .leastWidth = 50,
        .leastHeight = 32,
        .encoderKind = EncoderKind::alphaLayer,
        .encoder = "libx265",
        .usualSpeed = "preset=medium:",
        .quickSpeed = "preset=superfast:",
        .colourShare = 0.95,
        .alphaShare = 0.10,
    },
};
static_assert(videoCodecRows.size() == static_cast<std::size_t>(VideoCodec::count),
              "Each codec has a row.");
static_assert(
    [] {
        for (std::size_t index = 0; index < videoCodecRows.size(); ++index)
            if (videoCodecRows[index].codec != static_cast<VideoCodec>(index))
                return false;
        return true;
    }(),
    "The rows are in the order of the enumeration.");

constexpr const VideoCodecRow& videoCodecRow(VideoCodec codec) {
    return videoCodecRows[static_cast<std::size_t>(codec)];
}

// The case's own name.
constexpr std::string_view rawValue(VideoCodec codec) {
    return videoCodecRow(codec).name;
}

// Accepts exactly the names that rawValue gives.
constexpr std::optional<VideoCodec> videoCodecNamed(std::string_view rawValue) {
    for (const VideoCodecRow& row : videoCodecRows)
        if (row.name == rawValue)
            return row.codec;
    return std::nullopt;
}

constexpr bool hasAlpha(VideoCodec codec) {
    return planeShapes(videoCodecRow(codec).pixelFormat).size() == 4;
}

// Exported as a QuickTime movie, otherwise as MPEG-4.
constexpr bool isQuickTime(VideoCodec codec) {
    return videoCodecRow(codec).fileType == MovieFileType::quickTime;
}

constexpr bool isProRes(VideoCodec codec) {
    return videoCodecRow(codec).standard == "ProRes";
}

} // namespace tarnwick
