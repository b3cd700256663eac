// tarnwick variations: a series of settings near an episode's defaults, as a list or as stills.
#include "TarnwickCore/Movies/VideoChapters.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Pictures/Halved.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeVariations.h"
#include "programs/Episode/StillSheet.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Movies/VariationsMovie.h"
#include "programs/Terminal/ProgressBar.h"
#include "programs/Terminal/TextTable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <filesystem>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

// As a video of them would name them.
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
    return document.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

std::vector<std::string> labelsOf(const EpisodeVariations& variations) {
    std::vector<std::string> labels;
    for (const VideoChapters::Chapter& chapter : chaptersOf(variations))
        labels.push_back(std::to_string(variations.series[labels.size()].index) + "  " +
                         chapter.title);
    return labels;
}

// Each at its start and with its values.
std::vector<LabelledPicture> stillsOf(const EpisodeVariations& variations,
                                      std::span<const std::string> labels,
                                      const SheetLayout& layout, bool hears) {
    const auto device = drawingDevice();
    ProgressBar bar("Step");
    const auto program = programOf(variations.episode, *device, bar);
    std::vector<LabelledPicture> stills;
    StillNews news;
    bool hitLoopBudget = false;
    for (const Variation& variation : variations.series) {
        bar.part(partName("Still", stills.size(), labels.size()));
        const EpisodeFrame frame{.episode = variations.episode,
                                 .size = drawnSize(layout),
                                 .time = variation.start,
                                 .frame = savedFrame(variation.start),
                                 .settings = variations.settingsOf(variation),
                                 .hears = hears};
        Picture picture = halved(pictureOf(program, frame, *device, news, bar));
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
    const bool hears = arguments.has(hearOption.name);
    writeSheet(stillsOf(variations, labels, layout, hears), layout, out);
}

// At most one of them can have standard output.
void checkOutputs(const Arguments& arguments, std::initializer_list<const Output*> outputs) {
    const auto count = std::ranges::count_if(
        outputs, [](const Output* output) { return output && output->isStandardOutput(); });
    if (count + arguments.has("--json") > 1 && count > 0)
        misuse("Standard output takes one of the movie, the chapters, the sheet and the list.");
}

// A list of that name would be read as the episode's settings from then on.
void checkChapters(const Arguments& arguments, std::string_view episode) {
    namespace fs = std::filesystem;
    const auto whole = [](const fs::path& file) {
        std::error_code ignored;
        return fs::weakly_canonical(fs::absolute(file, ignored), ignored);
    };
    const std::string chapters(arguments.value("--chapters").value_or(""));
    if (whole(chapters) == whole(fs::path(episode).replace_extension("json")))
        misuse(chapters + " is where the settings of " + std::string(episode) +
               " are read from; the chapters need another name.");
}

Status variations(const Arguments& arguments) {
    if (arguments.has("-o") && arguments.has("--sheet"))
        misuse("-o and --sheet exclude each other.");
    if (arguments.has("--chapters") && !arguments.has("-o"))
        misuse("--chapters wants -o: the chapters are those of a movie.");
    const auto chapters = Output::of(arguments, "--chapters", FileKind::chapterList);
    const auto sheet = Output::of(arguments, "--sheet", FileKind::pngPicture);
    const auto movie = arguments.has("-o") ? std::optional(movieTargetOf(arguments)) : std::nullopt;
    checkOutputs(arguments, {chapters ? &*chapters : nullptr, sheet ? &*sheet : nullptr,
                             movie ? &movie->out : nullptr});
    if (chapters)
        checkChapters(arguments, arguments.operand("episode"));
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

constexpr std::array<Option, 23> variationsOptions{{
    {"--seed", "N", "that the series is drawn from; required"},
    {"--count", "N", "how many; default: those of the episode's @variations"},
    {"--from", "N", "the first one's number; default: 1"},
    {"--length", "SECONDS", "of the episode; default: its @length, or 60"},
    {"--duration", "SECONDS", "that each is shown; default: its @variation, or 30"},
    {"--spread", "X", "from 0, the defaults, to 1, whole ranges; default: 0.5"},
    {"--json", "", "the list as JSON; times are in seconds"},
    {"--sheet", "OUT.png", "draws a still of each, at its start, instead of listing them"},
    columnsOption,
    {"-o", "OUT.mp4", "writes a movie of them, one after another, each a chapter"},
    {"--chapters", "OUT.json", "of the movie, with all values"},
    presetOption,
    {"--size", "WxH", "of each still (default: 400x225) or of the movie (default: its preset's)"},
    bitrateOption,
    draftOption,
    soundOption,
    noSoundOption,
    watermarkOption,
    setOption,
    keysOption,
    settingsOption,
    noSettingsOption,
    {"--hear", "",
     "in the stills episodes with Inputs hear their own sound, as they do in a movie"},
}};

} // namespace

const Command variationsCommand{.name = "variations",
                                .operands = "EPISODE",
                                .summary =
                                    "Lists variations of the episode's settings, drawn "
                                    "from a seed, or draws them on one picture or as a movie.",
                                .options = variationsOptions,
                                .run = variations};

} // namespace tarnwick
