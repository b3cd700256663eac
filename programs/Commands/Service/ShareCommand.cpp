// tarnwick share: an episode for others to see.
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/CommandLine/NewFolder.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeAudio.h"
#include "programs/Episode/EpisodeChannels.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Movies/ExportOptions.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Service.h"
#include "programs/Service/ShareMedia.h"
#include "programs/Terminal/ProgressBar.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>

namespace tarnwick {
namespace {

// The smallest valid movie and picture, until the real ones are drawn.
constexpr std::string_view standInLoop("\0\0\0\x08"
                                       "ftyp",
                                       8);
constexpr std::string_view standInThumb("\xff\xd8\xff");

template <const auto& choices> std::vector<std::string_view> valuesOf() {
    std::vector<std::string_view> values;
    for (const auto choice : choices)
        values.push_back(rawValue(choice));
    return values;
}

template <const auto& choices> auto choiceOf(const Arguments& arguments, std::string_view option) {
    const std::string_view text = arguments.textOf(option);
    return *std::ranges::find_if(choices,
                                 [&](const auto choice) { return rawValue(choice) == text; });
}

struct Request {
    Episode episode;
    NamedChannels channels{};
    std::filesystem::path audio{}; // that the episode hears
    ShareUpload upload; // with stand-ins for the movie and the picture that are not drawn yet
};

Request requestOf(const Arguments& arguments) {
    ShareUpload upload{.title = std::string(arguments.value("--title").value()),
                       .description = std::string(arguments.value("--description").value_or(""))};
    upload.licence = choiceOf<allLicences>(arguments, "--licence");
    upload.visibility = choiceOf<allVisibilities>(arguments, "--visibility");
    Episode episode = episodeAt(arguments.operand());
    upload.source = episode.text;
    upload.params = episode.params();
    const auto loop = arguments.value("--loop"), thumb = arguments.value("--thumb");
    upload.loop = loop ? mediaFile(*loop) : standInLoop;
    upload.thumb = thumb ? mediaFile(*thumb) : standInThumb;
    NamedChannels channels = episodeChannelsOf(arguments, episode);
    if (arguments.has("--audio"))
        checkHears(episode, "a sound file");
    return {std::move(episode), std::move(channels), episodeAudioOf(arguments).file,
            std::move(upload)};
}

// `status` is `misused` for errors of the command line, `failed` for those of the drawn media.
void checkProblems(const ShareUpload& upload, Status status) {
    const std::vector<std::string> problems = upload.problems();
    if (problems.empty())
        return;
    for (std::size_t at = 0; at + 1 < problems.size(); ++at)
        tell(problems[at]);
    throw CommandError(status, problems.back());
}

// An episode that does not compile is an error here, also if nothing is drawn.
void draw(Request& request, const Arguments& arguments, const PixelSize& size,
          const Settings& settings) {
    DrawingDevice().with([&](gpu::Device& device) {
        const SharedEpisode shared{.episode = request.episode,
                                   .program = programOf(request.episode, device),
                                   .size = size,
                                   .settings = settings,
                                   .channels = channelSourcesOf(request.channels, device),
                                   .audio = request.audio};
        if (!arguments.has("--thumb"))
            request.upload.thumb = sharedThumb(shared, device);
        if (!arguments.has("--loop"))
            request.upload.loop = sharedLoop(shared, device);
    });
}

Shared sent(const ShareUpload& upload, const Secret& token, const APIClient& client) {
    constexpr double kilobyte = 1000;
    const auto size =
        static_cast<double>(upload.source.size() + upload.loop.size() + upload.thumb.size()) /
        kilobyte;
    HeldSignals signals;
    std::atomic<double> done = 0;
    ProgressBar bar("Kilobyte");
    return awaited(
        signals,
        [&](std::stop_token stop) {
            return client.share(
                upload, token.text(), [&](double part) { done = part; }, std::move(stop));
        },
        [&] { bar.show(static_cast<std::int64_t>(done * size), static_cast<std::int64_t>(size)); });
}

// All that would be sent, as files.
void writePreview(const ShareUpload& upload, const std::filesystem::path& folder) {
    const std::array<NewFile, 4> files{{
        {"meta.json", upload.metaJSON()},
        {"source.metal", upload.source},
        {"loop.mp4", upload.loop},
        {"thumb.jpg", upload.thumb},
    }};
    writeNewFolder(folder, files);
    for (const NewFile& file : files)
        print((folder / file.path).string() + "\n");
}

Status preview(Request& request, const Arguments& arguments, const PixelSize& size) {
    const std::string_view folder = arguments.value("--preview").value();
    checkNewFolder(folder);
    draw(request, arguments, size, episodeSettingsOf(arguments, request.episode));
    checkProblems(request.upload, Status::failed);
    writePreview(request.upload, folder);
    return Status::done;
}

Status share(const Arguments& arguments) {
    Request request = requestOf(arguments);
    const ShareUpload& upload = request.upload;
    const PixelSize size = movieSizeOf(arguments, ExportPreset::site);
    checkProblems(upload, Status::misused);
    if (arguments.has("--preview"))
        return preview(request, arguments, size);
    const Settings settings = episodeSettingsOf(arguments, request.episode);
    const Service service(arguments);
    const Secret token = service.wantedToken();
    draw(request, arguments, size, settings);
    checkProblems(upload, Status::failed);
    try {
        print(terminalText(sent(upload, token, service.client()).url.string()) + "\n");
    } catch (const ServiceError& refusal) {
        if (refusal.kind() == ServiceError::Kind::needsHandle)
            failure(std::string(refusal.what()) + " tarnwick handle NAME does that.");
        throw;
    }
    return Status::done;
}

constexpr std::array<Option, 8> pageOptions{{
    {.name = "--title", .value = "TEXT", .help = "title of the page", .isRequired = true},
    {.name = "--description",
     .value = "TEXT",
     .help = "description on the page",
     .byDefault = "none"},
    {.name = "--licence",
     .value = "ID",
     .help = "licence",
     .values = OneOf{valuesOf<allLicences>},
     .byDefault = "cc-by-nc-sa-4.0"},
    {.name = "--visibility",
     .value = "WHO",
     .help = "who sees the page",
     .values = OneOf{valuesOf<allVisibilities>},
     .byDefault = "public"},
    {.name = "--loop",
     .value = "FILE.mp4",
     .help = "movie that loops",
     .values = FileName{},
     .byDefault = "drawn from the episode"},
    {.name = "--thumb",
     .value = "FILE.jpg",
     .help = "still",
     .values = FileName{},
     .byDefault = "drawn from the episode"},
    movieSizeOption,
    {.name = "--preview",
     .value = "FOLDER",
     .help = "send nothing; write all that would be sent into a new folder",
     .values = FileName{},
     .byDefault = "none"},
}};
constexpr auto shareOptions = joined(pageOptions, std::array{audioOption({}), channelOption},
                                     animationOptions, serviceOptions);

} // namespace

const Command shareCommand{.name = "share",
                           .operands = "EPISODE",
                           .summary = "Publishes the episode on the sharing service, with a movie "
                                      "and a still, and prints its page's address.",
                           .options = shareOptions,
                           .run = share};

} // namespace tarnwick
