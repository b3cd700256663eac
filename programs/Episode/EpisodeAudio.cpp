#include "programs/Episode/EpisodeAudio.h"

#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"
#include "programs/CommandLine/CommandError.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 3> names{"file", "own", "both"}; // as EpisodeAudio::Track

double secondsOf(const std::filesystem::path& file) {
    return LoopedSound::open(file)->seconds();
}

} // namespace

std::vector<std::string_view> trackNames() {
    return {names.begin(), names.end()};
}

EpisodeAudio episodeAudioOf(const Arguments& arguments) {
    EpisodeAudio audio;
    const auto given = arguments.value("--audio");
    if (!given)
        return audio;
    audio.file = *given;
    try {
        audio.seconds = secondsOf(audio.file);
    } catch (const MovieError& error) {
        misuse(error.what());
    }
    if (const auto track = arguments.value("--track"))
        audio.track =
            static_cast<EpisodeAudio::Track>(std::ranges::find(names, *track) - names.begin());
    return audio;
}

std::filesystem::path movieFileOf(const EpisodeAudio& audio, const Arguments& arguments) {
    const bool isHeard = audio.hasFile() && !arguments.has("--no-sound");
    return isHeard ? audio.file : std::filesystem::path();
}

void checkHears(const Episode& episode, std::string_view sound) {
    if (!episode.shader.usesInputs)
        failure(episode.path + " does not hear " + std::string(sound) +
                ": its shade has no parameter of the type Inputs.");
}

Performance withReadableSounds(Performance performance) {
    std::set<std::string> files;
    for (const PerformedInputs& inputs : inputSets(performance))
        if (const auto sound = inputs.find(soundInput); sound != inputs.end())
            files.insert(sound->second.file);
    for (const std::string& file : files)
        try {
            secondsOf(file);
        } catch (const MovieError& error) {
            tell(error.what());
            performance = withoutSound(std::move(performance), file);
        }
    return performance;
}

} // namespace tarnwick
