#include "programs/Movies/ExportOptions.h"

#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Movie/SettingsError.h"
#include "TarnwickRender/VideoExporter.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Episode/EpisodeSound.h"

#include <algorithm>

namespace tarnwick {
namespace {

void readBitrate(ExportPreset& preset, const Arguments& arguments) {
    const auto given = arguments.value("--bitrate");
    if (!given)
        return;
    if (videoCodecRow(preset.codec).isIntraOnly)
        misuse("The preset " + std::string(preset.id) +
               " has no bit rate: --bitrate is not allowed.");
    preset = preset.withBitrate(integerOf(*given).value());
}

// Even numbers, which chroma requires.
void makeDraft(ExportPreset& preset, bool keepsBitrate) {
    for (std::int64_t* side : {&preset.width, &preset.height})
        *side = std::max(movieSizes.leastWidth, *side / 4 * 2);
    if (!keepsBitrate)
        preset = preset.withBitrate(preset.bitrate / 2);
}

} // namespace

std::vector<std::string_view> presetIDs() {
    std::vector<std::string_view> ids;
    for (const auto& presets : {ExportPreset::all(), ExportPreset::pro()})
        for (const ExportPreset& preset : presets)
            ids.push_back(preset.id);
    return ids;
}

PixelSize movieSizeOf(const Arguments& arguments, const ExportPreset& preset) {
    const auto given = arguments.value("--size");
    if (!given)
        return PixelSize::of(preset.width, preset.height).value();
    requireValue("--size", movieSizes, *given);
    return pixelSizeOf(arguments);
}

MovieTarget movieTargetOf(const Arguments& arguments) {
    ExportPreset preset = ExportPreset::named(arguments.textOf("--preset")).value();
    const PixelSize size = movieSizeOf(arguments, preset);
    preset.width = size.width;
    preset.height = size.height;
    if (arguments.has("--fps"))
        preset.fps = arguments.integerOf("--fps");
    readBitrate(preset, arguments);
    const bool isDraft = arguments.has("--draft");
    if (isDraft)
        makeDraft(preset, arguments.has("--bitrate"));
    const MovieFileType type = videoCodecRow(preset.codec).fileType;
    if (const auto error = settingsError(VideoExporter::videoSettings(preset), type))
        misuse(*error);
    return {
        .preset = preset,
        .speed = isDraft ? EncodingSpeed::quick : EncodingSpeed::usual,
        .out = Output::required(arguments, fileKind(type), "The preset " + std::string(preset.id))};
}

bool exportSoundOf(const Arguments& arguments, const Episode& episode) {
    if (arguments.has("--sound"))
        checkSound(episode);
    return !arguments.has("--no-sound") && episode.shader.hasSound;
}

void checkMovieLength(double seconds) {
    if (!(seconds > 0 && seconds <= secondsUpToADay.most))
        misuse("The movie would be " + shortest(seconds) +
               " s long; it must be above 0 s and at "
               "most " +
               shortest(secondsUpToADay.most) + " s.");
}

} // namespace tarnwick
