// tarnwick sheet: the stills of many episodes on one picture.
#include "TarnwickPlatform/Pictures/Halved.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/StillSheet.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace tarnwick {
namespace {

struct SheetEpisode {
    Episode episode;
    Settings settings;
};

// Number and title; the name of the file if the episode has no title.
std::string labelOf(const Episode& episode) {
    if (episode.meta.title == EpisodeMeta().title)
        return std::filesystem::path(episode.path).stem().string();
    return std::to_string(episode.meta.number) + "  " + episode.meta.title;
}

// Sorted by their numbers.
std::vector<SheetEpisode> episodesOf(const Arguments& arguments) {
    std::vector<SheetEpisode> episodes;
    for (const std::string_view path : arguments.operands()) {
        Episode episode = episodeAt(path);
        Settings settings = episodeSettingsOf(arguments, episode);
        episodes.push_back({std::move(episode), std::move(settings)});
    }
    std::ranges::stable_sort(episodes, {},
                             [](const SheetEpisode& one) { return one.episode.meta.number; });
    return episodes;
}

LabelledPicture labelledStill(const SheetEpisode& one, const SheetLayout& layout, bool hears,
                              gpu::Device& device, ProgressBar& bar) {
    const double time = stillTime(one.episode);
    const EpisodeFrame frame{.episode = one.episode,
                             .size = drawnSize(layout),
                             .time = time,
                             .frame = savedFrame(time),
                             .timeline = one.settings,
                             .hears = hears};
    return {.picture = halved(pictureOf(frame, device, bar)), .label = labelOf(one.episode)};
}

Status sheet(const Arguments& arguments) {
    const Output out = Output::required(arguments, FileKind::pngPicture);
    const std::vector<SheetEpisode> episodes = episodesOf(arguments);
    std::vector<std::string> labels;
    for (const SheetEpisode& one : episodes)
        labels.push_back(labelOf(one.episode));
    const SheetLayout layout = sheetLayoutOf(arguments, labels);
    DrawingDevice device;
    std::vector<LabelledPicture> pictures;
    {
        ProgressBar bar("Step");
        for (const SheetEpisode& one : episodes) {
            bar.part(partName("Still", pictures.size(), episodes.size()));
            pictures.push_back(device.with([&](gpu::Device& present) {
                return labelledStill(one, layout, arguments.has("--hear"), present, bar);
            }));
        }
    }
    writeSheet(pictures, layout, out);
    return Status::done;
}

constexpr auto sheetOptions = joined(std::array<Option, 2>{{
                                         {.name = "-o",
                                          .value = "OUT.png",
                                          .help = "the sheet; - is standard output",
                                          .values = FileName{},
                                          .isRequired = true},
                                         stillSizeOption,
                                     }},
                                     columnsOptions, settingsOptions, hearOptions);

} // namespace

const Command sheetCommand{.name = "sheet",
                           .operands = "EPISODE...",
                           .summary = "Draws the stills of episodes on one picture, with their "
                                      "numbers and titles.",
                           .options = sheetOptions,
                           .run = sheet};

} // namespace tarnwick
