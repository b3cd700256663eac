// tarnwick variations: a series of settings near an episode's defaults, as a list or as stills.
#include "TarnwickCore/Movies/VideoChapters.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Pictures/Halved.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeVariations.h"
#include "programs/Episode/StillSheet.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Movies/VariationsMovie.h"
#include "programs/Terminal/JSONText.h"
#include "programs/Terminal/ProgressBar.h"
#include "programs/Terminal/TextTable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <filesystem>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

// The chapters of their movie.
std::vector<VideoChapters::Chapter> chaptersOf(const EpisodeVariations& variations) {
    return VideoChapters::variations(variations.series, variations.duration, 0).chapters;
}

std::string listText(const EpisodeVariations& variations) {
    const auto chapters = chaptersOf(variations);
    std::vector<std::vector<std::string>> rows{{"variation", "start", "highlights", "settings"}};
    for (std::size_t at = 0; at < chapters.size(); ++at) {
        const Variation& variation = variations.series[at];
        rows.push_back({std::to_string(variation.index), shortest(variation.start) + " s",
                        chapters[at].title, chapters[at].settings});
    }
    return textTable(rows);
}

ordered_json documentOf(const Variation& variation) {
    ordered_json values = ordered_json::object();
    for (const auto& [name, value] : variation.values)
        values[name] = asWritten(value);
    return {{"index", variation.index},
            {"start", variation.start},
            {"highlights", variation.highlights},
            {"values", values}};
}

std::string listJSON(const EpisodeVariations& variations) {
    ordered_json series = ordered_json::array();
    for (const Variation& variation : variations.series)
        series.push_back(documentOf(variation));
    const ordered_json document{{"episode", variations.episode.path},
                                {"seed", variations.seed},
                                {"length", variations.length},
                                {"duration", variations.duration},
                                {"spread", asWritten(variations.spread)},
                                {"variations", series}};
    return jsonText(document) + "\n";
}

std::vector<std::string> labelsOf(const EpisodeVariations& variations) {
    std::vector<std::string> labels;
    for (const VideoChapters::Chapter& chapter : chaptersOf(variations))
        labels.push_back(std::to_string(variations.series[labels.size()].index) + "  " +
                         chapter.title);
    return labels;
}

// What the stills hear.
struct Heard {
    bool isOwn = false;         // their own sound
    std::filesystem::path file; // instead of it; empty: none
};

// Each still is at the start of its variation and has its values.
std::vector<LabelledPicture> stillsOf(const EpisodeVariations& variations,
                                      std::span<const std::string> labels,
                                      const SheetLayout& layout, const Heard& heard,
                                      const NamedChannels& named, gpu::Device& device) {
    ProgressBar bar("Step");
    const auto program = programOf(variations.episode, device, bar);
    const ChannelSources channels = channelSourcesOf(named, device);
    std::vector<LabelledPicture> stills;
    StillNews news;
    bool hitLoopBudget = false;
    for (const Variation& variation : variations.series) {
        bar.part(partName("Still", stills.size(), labels.size()));
        const EpisodeFrame frame{.episode = variations.episode,
                                 .size = drawnSize(layout),
                                 .time = variation.start,
                                 .frame = savedFrame(variation.start),
                                 .timeline = variations.settingsOf(variation),
                                 .hears = heard.isOwn,
                                 .channels = channels,
                                 .audio = heard.file};
        Picture picture = halved(pictureOf(program, frame, device, news, bar));
        hitLoopBudget |= news.hitLoopBudget;
        stills.push_back({.picture = std::move(picture), .label = labels[stills.size()]});
    }
    bar.hide();
    if (hitLoopBudget)
        warnOfLoopBudget(variations.episode.path);
    return stills;
}

void writeSheetOf(const EpisodeVariations& variations, const Arguments& arguments,
                  const Output& out) {
    const std::vector<std::string> labels = labelsOf(variations);
    const SheetLayout layout = sheetLayoutOf(arguments, labels);
    const Heard heard{arguments.has("--hear"), episodeAudioOf(arguments).file};
    if (!heard.file.empty())
        checkHears(variations.episode, "a sound file");
    const NamedChannels channels = episodeChannelsOf(arguments, variations.episode);
    const auto stills = DrawingDevice().with([&](gpu::Device& device) {
        return stillsOf(variations, labels, layout, heard, channels, device);
    });
    writeSheet(stills, layout, out);
}

// At most one of them is standard output.
void checkOutputs(const Arguments& arguments, std::initializer_list<const Output*> outputs) {
    const auto count = std::ranges::count_if(
        outputs, [](const Output* output) { return output && output->isStandardOutput(); });
    if (count + arguments.has("--json") > 1 && count > 0)
        misuse(
            "Only one of the movie, the chapters, the sheet and the list can be standard output.");
}

// Commands would read a list of that name as the episode's settings.
void checkChapters(const Arguments& arguments, std::string_view episode) {
    namespace fs = std::filesystem;
    const auto whole = [](const fs::path& file) {
        std::error_code ignored;
        return fs::weakly_canonical(fs::absolute(file, ignored), ignored);
    };
    const std::string chapters(arguments.value("--chapters").value_or(""));
    if (whole(chapters) == whole(fs::path(episode).replace_extension("json")))
        misuse(chapters + " is the settings document of " + std::string(episode) +
               "; the chapters require another name.");
}

Status variations(const Arguments& arguments) {
    const auto chapters = Output::of(arguments, "--chapters", FileKind::chapterList);
    const auto sheet = Output::of(arguments, "--sheet", FileKind::pngPicture);
    const auto movie = arguments.has("-o") ? std::optional(movieTargetOf(arguments)) : std::nullopt;
    checkOutputs(arguments, {chapters ? &*chapters : nullptr, sheet ? &*sheet : nullptr,
                             movie ? &movie->out : nullptr});
    if (chapters)
        checkChapters(arguments, arguments.operand());
    const EpisodeVariations variations = episodeVariationsOf(arguments);
    if (sheet)
        writeSheetOf(variations, arguments, *sheet);
    if (movie) {
        const VideoChapters list = exportVariations(variations, arguments, *movie);
        if (chapters)
            chapters->write(list.json() + "\n");
    }
    if (arguments.has("--json"))
        print(listJSON(variations));
    else if (!sheet && !movie)
        print(listText(variations));
    return Status::done;
}

constexpr std::array<Option, 5> outputOptions{{
    {.name = "--json", .help = "print the list as JSON; times are in seconds"},
    {.name = "--sheet",
     .value = "OUT.png",
     .help =
         "draw a still of each variation at its start, instead of the list; - is standard output",
     .values = FileName{},
     .byDefault = "none",
     .excludes = "-o"},
    {.name = "-o",
     .value = "OUT.mp4",
     .help = "write a movie of the variations, each a chapter; - is standard output",
     .values = FileName{},
     .byDefault = "none"},
    {.name = "--chapters",
     .value = "OUT.json",
     .help = "write the movie's chapters with all values; - is standard output",
     .values = FileName{},
     .byDefault = "none",
     .needs = "-o"},
    {.name = "--size",
     .value = "WxH",
     .help = "size of each still; of a movie the default is the preset's size",
     .values = SizeInPixels{},
     .byDefault = stillSizeOption.byDefault},
}};
constexpr auto variationsOptions = joined(
    seriesOptions, outputOptions, columnsOptions, movieOptions,
    std::array{audioOption("--hear"), trackOption, channelOption}, animationOptions, hearOptions);

} // namespace

const Command variationsCommand{.name = "variations",
                                .operands = "EPISODE",
                                .summary =
                                    "Lists variations of the episode's settings, drawn "
                                    "from a seed, or draws them on one picture or as a movie.",
                                .options = variationsOptions,
                                .run = variations};

} // namespace tarnwick
