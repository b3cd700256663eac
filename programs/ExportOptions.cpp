#include "programs/ExportOptions.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Numbers.h"
#include "programs/CommandError.h"
#include "programs/EpisodeSound.h"

#include <filesystem>

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
    if (isProRes(preset.codec))
        misuse("The preset " + std::string(preset.id) + " takes no --bitrate.");
    const std::optional<std::int64_t> bitrate = integerOf(*given);
    if (!bitrate || *bitrate < leastBitrate || *bitrate > mostBitrate)
        misuse("--bitrate wants a whole number of bits a second from " +
               std::to_string(leastBitrate) + " to " + std::to_string(mostBitrate) + ", not " +
               quoted(*given) + ".");
    preset = preset.withBitrate(*bitrate);
}

} // namespace

std::string_view movieNameOf(const Arguments& arguments) {
    const std::string_view out = arguments.value("-o").value_or("");
    if (out.empty())
        misuse("-o OUT is missing: where to write the movie.");
    return out;
}

void checkMovieName(std::string_view out) {
    try {
        checkWholeFile(out);
    } catch (const WholeFileError& error) {
        misuse(error.what());
    }
}

// Chroma is shared by two pixels side by side and, in most codecs, one above the other.
PixelSize movieSizeOf(const Arguments& arguments, const ExportPreset& preset) {
    const PixelSize size = pixelSizeOf(arguments, {.width = preset.width, .height = preset.height});
    const auto fits = [](std::int64_t side) {
        return side >= leastSide && side <= mostSide && side % 2 == 0;
    };
    if (!fits(size.width) || !fits(size.height))
        misuse("--size wants even numbers from " + std::to_string(leastSide) + " to " +
               std::to_string(mostSide) + " for a movie, not " +
               quoted(arguments.value("--size").value_or("")) + ".");
    return size;
}

ExportPreset exportPresetOf(const Arguments& arguments, std::string_view out) {
    ExportPreset preset = presetOf(arguments);
    const PixelSize size = movieSizeOf(arguments, preset);
    preset.width = size.width;
    preset.height = size.height;
    readBitrate(preset, arguments);
    const std::string wanted = "." + std::string(preset.fileExtension());
    if (std::filesystem::path(out).extension() != wanted)
        misuse("The preset " + std::string(preset.id) + " writes files that end in " + wanted +
               ", not " + quoted(out) + ".");
    checkMovieName(out);
    return preset;
}

bool exportSoundOf(const Arguments& arguments, std::string_view episode, std::string_view path) {
    if (arguments.has("--sound") && arguments.has("--no-sound"))
        misuse("--sound and --no-sound exclude each other.");
    if (arguments.has("--sound"))
        checkSound(episode, path);
    return !arguments.has("--no-sound") && ShaderAssembler::definesSound(episode);
}

void checkMovieLength(double seconds) {
    if (!(seconds <= longestMovie))
        misuse("The movie would be " + shortest(seconds) + " seconds long; " +
               shortest(longestMovie) + " are the most.");
}

} // namespace tarnwick
