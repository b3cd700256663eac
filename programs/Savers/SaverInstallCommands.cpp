// tarnwick saver install, list, preview and uninstall: savers in the user's desktop.
#include "TarnwickBase/InstalledFiles.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "TarnwickCore/Text/UTF8.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Service/ProgramBeside.h"
#include "programs/Terminal/JSONText.h"
#include "programs/Terminal/TextTable.h"
#include "saver/Installing/InstalledSavers.h"

#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

std::string linesWith(const std::vector<std::string>& sentences) {
    std::string lines;
    for (const std::string& sentence : sentences)
        lines += terminalText(sentence) + "\n";
    return lines;
}

template <class Work> auto reported(const Work& work) {
    try {
        return work();
    } catch (const InstallError& error) {
        failure(error.what());
    }
}

std::string checkedName(std::string_view name) {
    if (!isUTF8(name))
        misuse("--name is not text in UTF-8.");
    if (trimmed(name).empty())
        misuse("--name must not be empty.");
    if (linesOf(name).front() != name)
        misuse("--name is more than one line.");
    return std::string(name);
}

std::string nameOf(const Arguments& arguments, const Episode& episode) {
    if (const auto given = arguments.value("--name"))
        return checkedName(*given);
    const bool hasTitle = episode.metaKeys.contains("episode") && !episode.meta.title.empty();
    return hasTitle ? episode.meta.title
                    : wellFormedUTF8(std::filesystem::path(episode.path).stem().string());
}

// `before` is the address of the episode that shows the channels, with a point.
void addChannels(const NamedChannels& named, const std::string& before,
                 std::vector<BundleChannel>& channels) {
    for (std::size_t index = 0; index < named.size(); ++index) {
        const NamedChannel* one = named[index].get();
        if (one == nullptr)
            continue;
        const std::string address = before + std::to_string(index);
        if (one->episode)
            channels.push_back({.address = address,
                                .text = one->episode->text,
                                .settings = one->settings.encode()});
        else
            channels.push_back({.address = address, .file = one->file});
        addChannels(one->channels, address + ".", channels);
    }
}

Status install(const Arguments& arguments) {
    const Episode episode = episodeAt(arguments.operand());
    checkCompiles(episode);
    Settings settings = episodeSettingsOf(arguments, episode);
    settings.name = nameOf(arguments, episode);
    std::vector<BundleChannel> channels;
    addChannels(episodeChannelsOf(arguments, episode), "", channels);
    const InstallReport report = reported([&] {
        return installSaver({.episode = episode,
                             .settings = settings,
                             .program = installedFile(InstalledFile::saver),
                             .channels = channels},
                            saverPlaces());
    });
    print(terminalText(settings.name + " is installed in " + report.bundle.string() + ".") + "\n" +
          linesWith(report.remarks));
    return Status::done;
}

std::string placesOf(const InstalledSaver& saver) {
    std::string places;
    for (const auto& [is, place] :
         {std::pair{saver.isListed, "XScreenSaver"}, {saver.hasEntry, "mate-screensaver"}})
        if (is)
            places += std::string(places.empty() ? "" : ", ") + place;
    return places.empty() ? "-" : places;
}

ordered_json objectOf(const InstalledSaver& saver) {
    return {{"id", saver.id()},
            {"name", saver.name},
            {"bundle", saver.bundle.string()},
            {"installed", saver.isInstalled},
            {"xscreensaver", saver.isListed},
            {"mate", saver.hasEntry}};
}

Status list(const Arguments& arguments) {
    const std::vector<InstalledSaver> savers = installedSavers(saverPlaces());
    ordered_json document = ordered_json::array();
    std::vector<std::vector<std::string>> table;
    for (const InstalledSaver& saver : savers) {
        document.push_back(objectOf(saver));
        table.push_back({terminalText(saver.id()), terminalText(saver.name), placesOf(saver),
                         terminalText(saver.bundle.string())});
    }
    if (arguments.has("--json"))
        print(jsonText(document) + "\n");
    else if (!table.empty())
        print(textTable(table));
    return Status::done;
}

InstalledSaver saverOf(const Arguments& arguments) {
    const auto saver = saverNamed(arguments.operand(), saverPlaces());
    if (!saver)
        misuse("There is no saver " + tarnwick::quoted(arguments.operand()) +
               "; tarnwick saver list lists them.");
    return *saver;
}

Status preview(const Arguments& arguments) {
    std::vector<std::string> words{"--bundle", saverOf(arguments).bundle.string()};
    words.emplace_back(arguments.has("--small") ? "--preview" : "--until-input");
    becomeSaver(words);
}

Status uninstall(const Arguments& arguments) {
    const InstalledSaver saver = saverOf(arguments);
    const InstallReport report = reported([&] { return uninstallSaver(saver, saverPlaces()); });
    print(terminalText(saver.name) + " is removed.\n" + linesWith(report.remarks));
    return Status::done;
}

constexpr auto installOptions =
    joined(std::array<Option, 2>{{
               {.name = "--name",
                .value = "NAME",
                .help = "name of the saver in the lists of desktops; installing the same name "
                        "again replaces the saver",
                .byDefault = "title of the episode, or name of its file"},
               {.name = "--values",
                .value = "FILE.json",
                .help = "base values of parameters: a document of settings, or a JSON object of "
                        "numbers",
                .values = FileName{},
                .byDefault = "values of the settings document"},
           }},
           std::array{channelOption}, animationOptions);
constexpr std::array<Option, 1> listOptions{{{.name = "--json", .help = "print JSON"}}};
constexpr std::array<Option, 1> previewOptions{{
    {.name = "--small", .help = "like the small picture in the settings of desktops, in a window"},
}};

} // namespace

const Command saverInstallCommand{
    .name = "saver install",
    .operands = "EPISODE",
    .summary = "Installs the episode as a screen saver, for XScreenSaver and mate-screensaver.",
    .options = installOptions,
    .run = install};
const Command saverListCommand{.name = "saver list",
                               .operands = "",
                               .summary = "Lists your screen savers, and the desktops' programs "
                                          "that show them.",
                               .options = listOptions,
                               .run = list};
const Command saverPreviewCommand{.name = "saver preview",
                                  .operands = "NAME",
                                  .summary = "Shows one of your screen savers on all screens until "
                                             "the first input.",
                                  .options = previewOptions,
                                  .run = preview};
const Command saverUninstallCommand{.name = "saver uninstall",
                                    .operands = "NAME",
                                    .summary = "Removes an installed screen saver. Files that "
                                               "were changed since are kept.",
                                    .options = {},
                                    .run = uninstall};

} // namespace tarnwick
