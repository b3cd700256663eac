#include "TarnwickPlatform/Movie/SettingsFault.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

struct CodecRow {
    MovieCodec codec;
    const char* name;
    std::int64_t leastWidth, leastHeight; // pixels
};

// libx265 3.5 writes behind its memory where cutree goes over rows of less than four 16x16 blocks,
// that is below 50 pixels (valgrind finds it at all even widths up to 48, whatever the height), and
// below 32 pixels it has no coding blocks that its higher levels take.
constexpr std::array codecRows{
    CodecRow{MovieCodec::h264, "An H.264", 16, 16},
    CodecRow{MovieCodec::hevc, "An HEVC", 50, 32},
    CodecRow{MovieCodec::prores422HQ, "A ProRes", 16, 16},
    CodecRow{MovieCodec::prores4444, "A ProRes", 16, 16},
    CodecRow{MovieCodec::hevcWithAlpha, "An HEVC", 50, 32},
};

const CodecRow& codecRow(MovieCodec codec) {
    return *std::ranges::find(codecRows, codec, &CodecRow::codec);
}

std::string sizeText(std::int64_t width, std::int64_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

std::optional<std::string> sizeFault(const VideoSettings& settings) {
    constexpr std::int64_t greatest = 16384;
    const CodecRow& row = codecRow(settings.codec);
    const std::string size = sizeText(settings.width, settings.height);
    if (settings.width < row.leastWidth || settings.height < row.leastHeight)
        return std::string(row.name) + " movie has at least " +
               sizeText(row.leastWidth, row.leastHeight) + " pixels, not " + size + ".";
    if (settings.width > greatest || settings.height > greatest)
        return "Pictures of a movie have up to 16384 pixels a side, not " + size + ".";
    for (const PlaneShape& shape : planeShapes(encoderFormat(settings.codec)))
        if (settings.width % shape.across != 0 || settings.height % shape.down != 0)
            return "This codec takes pictures of an even " +
                   std::string(shape.down > 1 ? "width and height" : "width") + ", not " + size +
                   ".";
    return std::nullopt;
}

} // namespace

std::optional<std::string> settingsFault(const VideoSettings& settings, MovieFileType type) {
    if (std::optional<std::string> fault = sizeFault(settings))
        return fault;
    if (settings.framesPerSecond < 1 || settings.framesPerSecond > 1000)
        return "A movie has 1 to 1000 frames a second, not " +
               std::to_string(settings.framesPerSecond) + ".";
    if (isProRes(settings.codec)) {
        if (type != MovieFileType::quickTime)
            return "ProRes goes into QuickTime movies only.";
        return std::nullopt;
    }
    if (settings.codec == MovieCodec::hevcWithAlpha &&
        !(settings.alphaQuality >= 0 && settings.alphaQuality <= 1))
        return "Alpha has a quality from 0 to 1, not " + std::to_string(settings.alphaQuality) +
               ".";
    constexpr std::int64_t greatestBitRate = 2'000'000'000;
    if (settings.averageBitRate < 1 || settings.averageBitRate > greatestBitRate)
        return "A movie has 1 to 2000000000 bits a second, not " +
               std::to_string(settings.averageBitRate) + ".";
    constexpr std::int64_t greatestInterval = 100'000;
    if (settings.maxKeyFrameInterval < 1 || settings.maxKeyFrameInterval > greatestInterval)
        return "Key frames are 1 to 100000 frames apart, not " +
               std::to_string(settings.maxKeyFrameInterval) + ".";
    return std::nullopt;
}

std::optional<std::string> settingsFault(const AudioSettings& settings) {
    constexpr std::array<std::int64_t, 3> rates{32000, 44100, 48000};
    if (std::ranges::find(rates, settings.sampleRate) == rates.end())
        return "Sound has 32000, 44100 or 48000 samples a second, not " +
               std::to_string(settings.sampleRate) + ".";
    if (settings.channels != 1 && settings.channels != 2)
        return "Sound has one or two channels, not " + std::to_string(settings.channels) + ".";
    if (settings.bitRate < 32'000 || settings.bitRate > 512'000)
        return "Sound has 32000 to 512000 bits a second, not " + std::to_string(settings.bitRate) +
               ".";
    constexpr std::int64_t mostLeadIn = 48'000;
    if (settings.leadIn < 0 || settings.leadIn > mostLeadIn ||
        settings.leadIn % AudioSettings::packet != 0)
        return "The samples before a sound are a multiple of 1024, up to 48000, not " +
               std::to_string(settings.leadIn) + ".";
    return std::nullopt;
}

} // namespace tarnwick
