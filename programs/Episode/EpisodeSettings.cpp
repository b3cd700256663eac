#include "programs/Episode/EpisodeSettings.h"

#include "TarnwickCore/Animation/ValuesDocument.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Bundle/Bundle.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/CommandLine/SourceFile.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

// Says which of the settings from `source` do not fit the episode, and gives those that do.
Settings fitted(const Settings& settings, const Episode& episode, std::string_view source) {
    for (const std::string& misfit : settings.misfits(episode.params(), episode.path))
        tell(std::string(source) + ": " + misfit);
    return settings.fitted(episode.params());
}

std::string unread(const std::string& file, std::string_view kind, const DocumentError& error) {
    return file + " holds no " + std::string(kind) + ": " + error.what();
}

// The document at `file`, read by `decode`; `kind` is its noun in messages.
template <class Decode>
auto documentAt(const std::string& file, std::string_view kind, Decode decode) {
    try {
        return decode(sourceText(file));
    } catch (const DocumentError& error) {
        misuse(unread(file, kind, error));
    }
}

// The document beside the episode. A file of that name may be of another kind: a movie's chapters.
Settings foundSettings(const std::string& file, const Episode& episode) {
    Settings settings;
    try {
        settings = Settings::decode(sourceText(file));
    } catch (const DocumentError& error) {
        const std::string sentence = unread(file, "settings", error);
        if (error.cause == DocumentError::Cause::broken)
            misuse(sentence + " --no-settings ignores the file.");
        tell(sentence + " It is ignored.");
        return {};
    }
    tell("The settings are read from " + file + "; --no-settings ignores them.");
    return fitted(settings, episode, file);
}

} // namespace

Settings settingsBesideOf(const Episode& episode) {
    const auto beside = settingsBeside(episode.path);
    return beside ? foundSettings(beside->string(), episode) : Settings{};
}

namespace {

Settings documentOf(const Arguments& arguments, const Episode& episode) {
    if (const auto given = arguments.value("--settings"))
        return fitted(documentAt(std::string(*given), "settings", Settings::decode), episode,
                      *given);
    return arguments.has("--no-settings") ? Settings{} : settingsBesideOf(episode);
}

// The base value replaces the values and keys of the document.
void apply(std::string_view assignment, const Episode& episode, Settings& settings) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos)
        misuse("--set must be NAME=VALUE, not " + quoted(assignment) + ".");
    const std::string name(assignment.substr(0, equals));
    const std::string_view written = assignment.substr(equals + 1);
    if (std::ranges::find(episode.params(), name, &ParamDecl::name) == episode.params().end())
        misuse(undeclaredSentence(name, episode.params(), episode.path));
    const std::optional<float> value = floatOf(written);
    if (!value || !std::isfinite(*value))
        misuse("The value of " + name + " must be a number, not " + quoted(written) + ".");
    const Settings given = fitted({.values = {{name, *value}}}, episode, "--set");
    settings.values[name] = given.values.at(name);
    settings.keys.clear(name);
}

} // namespace

Settings episodeSettingsOf(const Arguments& arguments, const Episode& episode) {
    Settings settings = documentOf(arguments, episode);
    if (const auto file = arguments.value("--values")) {
        const ParamValues values = documentAt(std::string(*file), "values", decodeValues);
        for (const auto& [name, value] : fitted({.values = values}, episode, *file).values) {
            settings.values[name] = value;
            settings.keys.clear(name);
        }
    }
    for (const std::string_view assignment : arguments.values("--set"))
        apply(assignment, episode, settings);
    if (const auto file = arguments.value("--keys")) {
        const KeyframeTracks keys = documentAt(std::string(*file), "keys", decodeKeys);
        for (auto& [name, track] : fitted({.keys = keys}, episode, *file).keys.tracks)
            settings.keys.tracks[name] = track;
    }
    return settings;
}

} // namespace tarnwick
