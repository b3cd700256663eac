// tarnwick sheet: the stills of many episodes on one picture.
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickPlatform/Pictures/Halved.h"
#include "programs/CommandLine/SourceFile.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/StillSheet.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace tarnwick {
namespace {

struct Episode {
    std::string_view path;
    std::string text;
    std::int64_t number;
    std::string label;
    Settings settings;
};

// Number and title. The name of the file where the episode has no title: all such episodes would
// have one label.
std::string labelOf(const EpisodeMeta& meta, std::string_view path) {
    if (meta.title == EpisodeMeta().title)
        return std::filesystem::path(path).stem().string();
    return std::to_string(meta.number) + "  " + meta.title;
}

// In the order of their numbers.
std::vector<Episode> episodesOf(const Arguments& arguments) {
    if (arguments.operands().empty())
        misuse("The episodes are missing.");
    std::vector<Episode> episodes;
    for (const std::string_view path : arguments.operands()) {
        const std::string text = sourceText(path);
        const EpisodeMeta meta = EpisodeMeta::parse(text);
        episodes.push_back({path, text, meta.number, labelOf(meta, path),
                            episodeSettingsOf(arguments, path, text)});
    }
    std::ranges::stable_sort(episodes, {}, &Episode::number);
    return episodes;
}

LabelledPicture labelledStill(const Episode& episode, const SheetLayout& layout, bool hears,
                              gpu::Device& device, ProgressBar& bar) {
    const double time = stillTime(episode.text);
    const EpisodeFrame frame{.path = episode.path,
                             .episode = episode.text,
                             .size = drawnSize(layout),
                             .time = time,
                             .frame = savedFrame(time),
                             .settings = episode.settings,
                             .hears = hears};
    return {.picture = halved(pictureOf(frame, device, bar)), .label = episode.label};
}

Status sheet(const Arguments& arguments) {
    const Output out = Output::wanted(arguments, FileKind::pngPicture);
    const std::vector<Episode> episodes = episodesOf(arguments);
    std::vector<std::string> labels;
    for (const Episode& episode : episodes)
        labels.push_back(episode.label);
    const SheetLayout layout = sheetLayoutOf(arguments, labels);
    const auto device = drawingDevice();
    std::vector<LabelledPicture> pictures;
    {
        ProgressBar bar("Step");
        for (const Episode& episode : episodes) {
            bar.part(partName("Still", pictures.size(), episodes.size()));
            pictures.push_back(
                labelledStill(episode, layout, arguments.has(hearOption.name), *device, bar));
        }
    }
    writeSheet(pictures, layout, out);
    return Status::done;
}

constexpr std::array<Option, 6> sheetOptions{{
    {"-o", "OUT.png", "where to write the sheet, or - for standard output; required"},
    columnsOption,
    stillSizeOption,
    settingsOption,
    noSettingsOption,
    hearOption,
}};

} // namespace

const Command sheetCommand{.name = "sheet",
                           .operands = "EPISODE...",
                           .summary = "Draws the stills of episodes on one picture, with their "
                                      "numbers and titles.",
                           .options = sheetOptions,
                           .run = sheet};

} // namespace tarnwick
