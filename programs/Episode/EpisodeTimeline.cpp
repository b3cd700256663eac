#include "programs/Episode/EpisodeTimeline.h"

#include "TarnwickPlatform/Bundle/TextFile.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Terminal/TerminalText.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <utility>

namespace tarnwick {
namespace {

void say(const std::string& sentence) {
    std::fprintf(stderr, "tarnwick: %s\n", terminalText(sentence).c_str());
}

Performance performanceAt(const std::string& file) {
    const auto text = fileText(file);
    if (!text)
        misuse(terminalText(file + " is missing or is not text in UTF-8."));
    try {
        return Performance::decode(*text);
    } catch (const DocumentError& error) {
        misuse(terminalText(file + " holds no performance: " + error.what()));
    }
}

} // namespace

EpisodeTimeline episodeTimelineOf(const Arguments& arguments, const Episode& episode) {
    const auto given = arguments.value("--performance");
    if (!given)
        return {.timeline = episodeSettingsOf(arguments, episode)};
    const std::string file(*given);
    const Performance performance = performanceAt(file);
    FoundInputs inputs;
    if (episode.shader.usesInputs)
        inputs = inputFilesOf(performance, std::filesystem::path(file).parent_path());
    for (const std::string& remark : performance.remarks)
        say(file + ": " + remark);
    if (Performance::markOf("", episode.text).sha256 != performance.episode.sha256)
        say(file + ": Another text than " + episode.path +
            " was performed; the picture may differ.");
    for (const std::string& misfit : performance.misfits(episode.params(), episode.path))
        say(file + ": " + misfit);
    for (const std::string& sentence : inputs.sentences)
        say(file + ": " + sentence);
    return {.timeline = std::make_shared<const Performance>(performance.fitted(episode.params())),
            .inputs = std::move(inputs.files)};
}

} // namespace tarnwick
