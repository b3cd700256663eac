#include "programs/Movies/ExportOptions.h"

#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Movie/SettingsError.h"
#include "TarnwickRender/VideoExporter.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeSound.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr std::int64_t leastSide = 16, mostSide = 8192;                  // pixels; HEVC's level 6.2
constexpr std::int64_t leastBitrate = 10'000, mostBitrate = 800'000'000; // the same level's
constexpr double longestMovie = 86400;                                   // seconds

ExportPreset presetOf(const Arguments& arguments) {
    const auto given = arguments.value("--preset");
    const std::optional<ExportPreset> preset =
        given ? ExportPreset::named(*given) : ExportPreset::site;
    if (!preset)
        misuse(quoted(*given) + " is not a preset; tarnwick presets lists them.");
    return *preset;
}

void readBitrate(ExportPreset& preset, const Arguments& arguments) {
    const auto given = arguments.value("--bitrate");
    if (!given)
        return;
    if (videoCodecRow(preset.codec).isIntraOnly)
        misuse("The preset " + std::string(preset.id) + " takes no --bitrate.");
    const std::optional<std::int64_t> bitrate = integerOf(*given);
    if (!bitrate || *bitrate < leastBitrate || *bitrate > mostBitrate)
        misuse("--bitrate wants a whole number of bits a second from " +
               std::to_string(leastBitrate) + " to " + std::to_string(mostBitrate) + ", not " +
               quoted(*given) + ".");
    preset = preset.withBitrate(*bitrate);
}

// Even, as chroma wants it.
void makeDraft(ExportPreset& preset, bool keepsBitrate) {
    for (std::int64_t* side : {&preset.width, &preset.height})
        *side = std::max(leastSide, *side / 4 * 2);
    if (!keepsBitrate)
        preset = preset.withBitrate(preset.bitrate / 2);
}

} // namespace

// Chroma is shared by two pixels side by side and, in most codecs, one above the other.
PixelSize movieSizeOf(const Arguments& arguments, const ExportPreset& preset) {
    const PixelSize size = pixelSizeOf(arguments, *PixelSize::of(preset.width, preset.height));
    const auto fits = [](std::int64_t side) {
        return side >= leastSide && side <= mostSide && side % 2 == 0;
    };
    if (!fits(size.width) || !fits(size.height))
        misuse("--size wants even numbers from " + std::to_string(leastSide) + " to " +
               std::to_string(mostSide) + " for a movie, not " +
               quoted(arguments.value("--size").value_or("")) + ".");
    return size;
}

MovieTarget movieTargetOf(const Arguments& arguments) {
    ExportPreset preset = presetOf(arguments);
    const PixelSize size = movieSizeOf(arguments, preset);
    preset.width = size.width;
    preset.height = size.height;
    readBitrate(preset, arguments);
    const bool isDraft = arguments.has(draftOption.name);
    if (isDraft)
        makeDraft(preset, arguments.has(bitrateOption.name));
    const MovieFileType type = videoCodecRow(preset.codec).fileType;
    if (const auto error = settingsError(VideoExporter::videoSettings(preset), type))
        misuse(*error);
    return {.preset = preset,
            .speed = isDraft ? EncodingSpeed::quick : EncodingSpeed::usual,
            .out =
                Output::wanted(arguments, fileKind(type), "The preset " + std::string(preset.id))};
}

bool exportSoundOf(const Arguments& arguments, const Episode& episode) {
    if (arguments.has("--sound") && arguments.has("--no-sound"))
        misuse("--sound and --no-sound exclude each other.");
    if (arguments.has("--sound"))
        checkSound(episode);
    return !arguments.has("--no-sound") && episode.shader.hasSound;
}

void checkMovieLength(double seconds) {
    if (!(seconds <= longestMovie))
        misuse("The movie would be " + shortest(seconds) + " seconds long; " +
               shortest(longestMovie) + " are the most.");
}

} // namespace tarnwick
