// tarnwick walkthrough: an episode explained by the steps that led to it.
#include "TarnwickPlatform/Pictures/PNG.h"
#include "programs/CommandLine/NewFolder.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodePicture.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Episode/EpisodeWalkthrough.h"
#include "programs/Episode/WalkthroughText.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Movies/WalkthroughMovie.h"
#include "programs/Terminal/Colours.h"
#include "programs/Terminal/ProgressBar.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// "stage-02-page-03.png", so that names sort like the pages.
fs::path pageName(std::int64_t stage, std::size_t page) {
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "stage-%02lld-page-%02zu.png",
                  static_cast<long long>(stage), page + 1);
    return name.data();
}

// Each stage at the time of the episode's still, so that the stages show the same moment.
std::vector<Picture> stillsOf(const EpisodeWalkthrough& walkthrough,
                              const WalkthroughRenderer& renderer, const fs::path& audio,
                              gpu::Device& device) {
    ProgressBar bar("Step");
    const auto programs = programsOf(walkthrough, device, bar);
    const ChannelSources channels = channelSourcesOf(walkthrough.channels, device);
    const double time = stillTime(walkthrough.episode());
    std::vector<Picture> stills;
    for (std::size_t index = 0; index < programs.size(); ++index) {
        bar.part(partName("Still", index, programs.size()));
        const auto& [x, y, width, height] = renderer.picture();
        StillNews news;
        stills.push_back(pictureOf(programs[index],
                                   {.episode = walkthrough.episodes[index],
                                    .size = *PixelSize::of(width, height),
                                    .time = time,
                                    .frame = savedFrame(time),
                                    .timeline = walkthrough.settings,
                                    .channels = channels,
                                    .audio = audio},
                                   device, news, bar));
        bar.hide();
        if (news.hitLoopBudget)
            warnOfLoopBudget(walkthrough.episodes[index].path);
    }
    return stills;
}

struct Page {
    std::size_t stage, page; // from 0 on
    Output out;
};

std::vector<Page> pagesOf(const std::vector<WalkthroughStage>& stages, const fs::path& folder,
                          const Arguments& arguments) {
    std::vector<Page> pages;
    for (std::size_t stage = 0; stage < stages.size(); ++stage)
        for (std::size_t page = 0; page < stages[stage].pages.size(); ++page)
            pages.push_back({stage, page,
                             Output::at(folder / pageName(stages[stage].number, page),
                                        FileKind::pngPicture, arguments.wordsBeside("--pages"))});
    return pages;
}

// Finds files in the way before anything is drawn.
void checkPages(std::span<const Page> pages, const fs::path& folder) {
    std::error_code error;
    if (!fs::exists(folder, error))
        return Output::checkWritable(folder);
    if (!fs::is_directory(folder, error))
        misuse(folder.string() + " already exists and is not a folder.");
    for (const Page& page : pages)
        page.out.check();
}

void writePages(const EpisodeWalkthrough& walkthrough, const WalkthroughRenderer& renderer,
                const fs::path& folder, const Arguments& arguments) {
    const std::vector<WalkthroughStage> stages = walkthrough.stages(renderer);
    const std::vector<Page> pages = pagesOf(stages, folder, arguments);
    checkPages(pages, folder);
    const fs::path audio = episodeAudioOf(arguments).file;
    const std::vector<Picture> stills = DrawingDevice().with(
        [&](gpu::Device& device) { return stillsOf(walkthrough, renderer, audio, device); });
    std::vector<NewFile> files;
    for (const auto& [stage, page, out] : pages) {
        const auto overlays = renderer.pages(stages[stage], stages.size());
        files.push_back({pageName(stages[stage].number, page),
                         pngOf(renderer.frame(stills[stage], overlays.overlay(page)))});
    }
    if (std::error_code error; !fs::exists(folder, error))
        writeNewFolder(folder, files); // all pages or none
    else
        for (std::size_t at = 0; at < pages.size(); ++at)
            pages[at].out.write(files[at].text);
    for (const Page& page : pages)
        print(page.out.name() + "\n");
}

Status walkthrough(const Arguments& arguments) {
    EpisodeWalkthrough walkthrough = episodeWalkthroughOf(arguments);
    const auto folder = arguments.value("--pages"), movie = arguments.value("-o");
    if (movie || folder) {
        walkthrough.settings = episodeSettingsOf(arguments, walkthrough.episode());
        walkthrough.channels = episodeChannelsOf(arguments, walkthrough.episode());
    }
    if (movie) {
        exportWalkthrough(walkthrough, arguments);
        return Status::done;
    }
    const PixelSize size = pixelSizeOf(arguments);
    const WalkthroughRenderer renderer = walkthroughRenderer(size.width, size.height);
    if (folder) {
        writePages(walkthrough, renderer, *folder, arguments);
        return Status::done;
    }
    const std::vector<WalkthroughStage> stages = walkthrough.stages(renderer);
    print(arguments.has("--json")
              ? walkthroughJSON(stages, walkthrough.episodes, renderer.capacity())
              : walkthroughText(stages, coloursOf(STDOUT_FILENO)));
    return Status::done;
}

constexpr std::array<Option, 7> pageOptions{{
    {.name = "--stages",
     .value = "FILE...",
     .help = "earlier versions of the episode, in order; all words up to the next option",
     .values = FileName{},
     .byDefault = "none"},
    {.name = "--json", .help = "print the pages as JSON", .excludes = "--pages -o"},
    {.name = "--pages",
     .value = "FOLDER",
     .help = "write the pages into a folder, as pictures like those of the movie",
     .values = FileName{},
     .byDefault = "none",
     .excludes = "-o"},
    {.name = "-o",
     .value = "OUT",
     .help =
         "write the pages as a movie, .mp4 or .mov according to the preset; - is standard output",
     .values = FileName{},
     .byDefault = "none"},
    {.name = "--size",
     .value = "WxH",
     .help = "size of the pages, for which the code is cut; of a movie the default is the preset's "
             "size",
     .values = SizeInPixels{},
     .byDefault = "1920x1080"},
    {.name = "--page-seconds",
     .value = "SECONDS",
     .help = "how long the movie shows each page",
     .values = secondsUpToADay,
     .byDefault = "6"},
    movieStartOption,
}};
constexpr auto walkthroughOptions =
    joined(pageOptions, movieOptions, std::array{audioOption({}), trackOption, channelOption},
           animationOptions);

} // namespace

const Command walkthroughCommand{
    .name = "walkthrough",
    .operands = "EPISODE",
    .summary = "Explains the episode page by page, by the lines that each version of it adds.",
    .options = walkthroughOptions,
    .run = walkthrough};

} // namespace tarnwick
