#include "TarnwickPlatform/Movie/SettingsError.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

std::string sizeText(std::int64_t width, std::int64_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

std::optional<std::string> sizeError(const VideoSettings& settings) {
    constexpr std::int64_t greatest = 16384;
    const VideoCodecRow& row = videoCodecRow(settings.codec);
    const std::string size = sizeText(settings.width, settings.height);
    if (settings.width < row.leastWidth || settings.height < row.leastHeight)
        return "A movie in " + std::string(row.standard) + " has at least " +
               sizeText(row.leastWidth, row.leastHeight) + " pixels, not " + size + ".";
    if (settings.width > greatest || settings.height > greatest)
        return "A movie has at most 16384 pixels a side, not " + size + ".";
    for (const PlaneShape& shape : planeShapes(row.pixelFormat))
        if (settings.width % shape.across != 0 || settings.height % shape.down != 0)
            return "A movie in " + std::string(row.standard) + " has an even " +
                   (shape.down > 1 ? "width and height" : "width") + ", not " + size + ".";
    return std::nullopt;
}

} // namespace

std::optional<std::string> settingsError(const VideoSettings& settings, MovieFileType type) {
    if (std::optional<std::string> error = sizeError(settings))
        return error;
    if (settings.framesPerSecond < 1 || settings.framesPerSecond > 1000)
        return "A movie has 1 to 1000 frames a second, not " +
               std::to_string(settings.framesPerSecond) + ".";
    const VideoCodecRow& row = videoCodecRow(settings.codec);
    if (row.isQuickTimeOnly && type != MovieFileType::quickTime)
        return std::string(row.standard) + " goes into QuickTime movies only.";
    if (row.isIntraOnly)
        return std::nullopt;
    if (row.encoderKind == EncoderKind::alphaLayer &&
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

std::optional<std::string> settingsError(const AudioSettings& settings) {
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
