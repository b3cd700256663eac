#include "programs/Episode/EpisodeTimeline.h"

#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeSettings.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <utility>

namespace tarnwick {
namespace {

Performance performanceAt(const std::string& file) {
    const auto text = fileText(file);
    if (!text)
        misuse(file + " is missing or is not text in UTF-8.");
    try {
        return Performance::decode(*text);
    } catch (const DocumentError& error) {
        misuse(file + " holds no performance: " + error.what());
    }
}

Performance withGivenInputs(const Arguments& arguments, Performance performance) {
    for (const auto& [name, file] : givenChannels(arguments))
        performance = withInput(std::move(performance), name, {.file = file});
    if (const auto sound = arguments.value("--audio"))
        performance = withInput(std::move(performance), soundInput, {.file = std::string(*sound)});
    return performance;
}

} // namespace

Timeline episodeTimelineOf(const Arguments& arguments, const Episode& episode) {
    const auto given = arguments.value("--performance");
    if (!given)
        return episodeSettingsOf(arguments, episode);
    const std::string file(*given);
    FoundInputs found = foundInputs(performanceAt(file), std::filesystem::path(file).parent_path());
    const Performance& performance = found.performance;
    for (const std::string& remark : performance.remarks)
        tell(file + ": " + remark);
    if (Performance::markOf("", episode.text).sha256 != performance.episode.sha256)
        tell(file + ": Another text than " + episode.path +
             " was performed; the picture may differ.");
    for (const std::string& misfit : performance.misfits(episode.params(), episode.path))
        tell(file + ": " + misfit);
    for (const std::string& sentence : found.sentences)
        tell(file + ": " + sentence);
    found.performance =
        withGivenInputs(arguments, withReadableSounds(std::move(found.performance)));
    return std::make_shared<const Performance>(found.performance.fitted(episode.params()));
}

} // namespace tarnwick
