// tarnwick swiftui: an episode as a Swift package.
#include "TarnwickCore/SwiftUIExport.h"
#include "TarnwickCore/Text/Characters.h"
#include "programs/CommandLine/NewFolder.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"

#include <array>

namespace tarnwick {
namespace {

// The title of the command line, else of the episode, else the file's name.
std::string titleOf(const Arguments& arguments, const Episode& episode) {
    if (const auto given = arguments.value("--title")) {
        if (trimmed(*given).empty())
            misuse("The title is empty.");
        return std::string(*given);
    }
    const std::string& title = episode.meta.title;
    return title != EpisodeMeta{}.title ? title
                                        : std::filesystem::path(episode.path).stem().string();
}

Status swiftUI(const Arguments& arguments) {
    const std::string_view path = arguments.operand();
    const std::string_view folder = arguments.value("-o").value();
    checkNewFolder(folder);
    const Episode episode = episodeAt(path);
    SwiftUIExport::Output output;
    try {
        output = SwiftUIExport::make(episode.text, titleOf(arguments, episode));
    } catch (const SwiftUIExport::Problem& problem) {
        failure(problem.what());
    }
    checkCompiles(episode);
    const std::filesystem::path target = "Sources/" + output.name + "Shader";
    const std::array<NewFile, 3> files{{
        {"Package.swift", output.packageManifest},
        {target / (output.name + ".metal"), output.metal},
        {target / (output.name + "View.swift"), output.packageSwift},
    }};
    writeNewFolder(folder, files);
    for (const NewFile& file : files)
        print((std::filesystem::path(folder) / file.path).string() + "\n");
    return Status::done;
}

constexpr std::array<Option, 2> swiftUIOptions{{
    {.name = "-o",
     .value = "FOLDER",
     .help = "the package, a new folder",
     .values = FileName{},
     .isRequired = true},
    {.name = "--title",
     .value = "TITLE",
     .help = "title, from which the names of its types are made",
     .byDefault = "title of the episode, or name of its file"},
}};

} // namespace

const Command swiftUICommand{
    .name = "swiftui",
    .operands = "EPISODE",
    .summary = "Writes a fragment episode without Inputs as a Swift package with a SwiftUI view.",
    .options = swiftUIOptions,
    .run = swiftUI};

} // namespace tarnwick
