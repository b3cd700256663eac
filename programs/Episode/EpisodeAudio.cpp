#include "programs/Episode/EpisodeAudio.h"

#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/TerminalText.h"

#include <algorithm>
#include <cstdio>

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 3> names{"file", "own", "both"}; // as EpisodeAudio::Track

double secondsOf(const std::filesystem::path& file) {
    return LoopedSound::open(file)->seconds();
}

EpisodeAudio performedAudio(std::span<const InputFile> performed) {
    const auto input = std::ranges::find(performed, "audio", &InputFile::name);
    if (input == performed.end())
        return {};
    try {
        return {.file = input->file,
                .seconds = secondsOf(input->file),
                .track = input->isPlayed ? EpisodeAudio::Track::both : EpisodeAudio::Track::own};
    } catch (const MovieError& error) {
        std::fprintf(stderr, "tarnwick: %s\n", terminalText(error.what()).c_str());
        return {};
    }
}

} // namespace

std::vector<std::string_view> trackNames() {
    return {names.begin(), names.end()};
}

EpisodeAudio episodeAudioOf(const Arguments& arguments, std::span<const InputFile> performed) {
    EpisodeAudio audio;
    const auto given = arguments.value("--audio");
    if (!given)
        return performedAudio(performed);
    audio.file = *given;
    try {
        audio.seconds = secondsOf(audio.file);
    } catch (const MovieError& error) {
        misuse(terminalText(error.what()));
    }
    if (const auto track = arguments.value("--track"))
        audio.track =
            static_cast<EpisodeAudio::Track>(std::ranges::find(names, *track) - names.begin());
    return audio;
}

} // namespace tarnwick
