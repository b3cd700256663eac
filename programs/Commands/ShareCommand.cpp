// tarnwick share: an episode for others to see.
#include "programs/Commands/Command.h"
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

namespace tarnwick {
namespace {

// The least that passes for a movie and a picture, until there are some.
constexpr std::string_view standInLoop("\0\0\0\x08"
                                       "ftyp",
                                       8);
constexpr std::string_view standInThumb("\xff\xd8\xff");

template <class Choice, std::size_t count>
Choice choiceOf(const Arguments& arguments, std::string_view option,
                const std::array<Choice, count>& choices, Choice otherwise) {
    const auto given = arguments.value(option);
    if (!given)
        return otherwise;
    std::string known;
    for (const Choice choice : choices) {
        if (rawValue(choice) == *given)
            return choice;
        known += (known.empty() ? "" : ", ") + std::string(rawValue(choice));
    }
    misuse(std::string(option) + " wants one of " + known + ", not " + quoted(*given) + ".");
}

struct Request {
    Episode episode;
    ShareUpload upload; // with stand-ins for the movie and the picture that are not drawn yet
};

Request requestOf(const Arguments& arguments) {
    if (!arguments.has("--title"))
        misuse("--title TEXT is missing: what the page is to be called.");
    ShareUpload upload{.title = std::string(arguments.value("--title").value()),
                       .description = std::string(arguments.value("--description").value_or(""))};
    upload.licence = choiceOf(arguments, "--licence", allLicences, upload.licence);
    upload.visibility = choiceOf(arguments, "--visibility", allVisibilities, upload.visibility);
    Episode episode = episodeAt(arguments.operand("episode"));
    upload.source = episode.text;
    upload.params = episode.params();
    const auto loop = arguments.value("--loop"), thumb = arguments.value("--thumb");
    upload.loop = loop ? mediaFile(*loop) : standInLoop;
    upload.thumb = thumb ? mediaFile(*thumb) : standInThumb;
    return {std::move(episode), std::move(upload)};
}

// `status` is whose fault they are: the command line's, or that of what was drawn.
void checkProblems(const ShareUpload& upload, Status status) {
    const std::vector<std::string> problems = upload.problems();
    if (problems.empty())
        return;
    for (std::size_t at = 0; at + 1 < problems.size(); ++at)
        std::fprintf(stderr, "tarnwick: %s\n", problems[at].c_str());
    throw CommandError(status, problems.back());
}

// What cannot be compiled is refused here too when nothing is to be drawn.
void draw(Request& request, const Arguments& arguments, const PixelSize& size,
          const Settings& settings) {
    const auto device = drawingDevice();
    const SharedEpisode shared{.episode = request.episode,
                               .program = programOf(request.episode, *device),
                               .size = size,
                               .settings = settings};
    if (!arguments.has("--thumb"))
        request.upload.thumb = sharedThumb(shared, *device);
    if (!arguments.has("--loop"))
        request.upload.loop = sharedLoop(shared, *device);
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

Status share(const Arguments& arguments) {
    Request request = requestOf(arguments);
    const ShareUpload& upload = request.upload;
    const PixelSize size = movieSizeOf(arguments, ExportPreset::site);
    checkProblems(upload, Status::misused);
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

constexpr std::array<Option, 12> shareOptions{{
    {"--title", "TEXT", "of its page; required"},
    {"--description", "TEXT", "on its page"},
    {"--licence", "ID", "cc-by-nc-sa-4.0 (default), cc-by-4.0, mit or arr"},
    {"--visibility", "WHO", "public (default), unlisted or private"},
    {"--loop", "FILE.mp4", "a movie that loops, in place of one that is drawn"},
    {"--thumb", "FILE.jpg", "a still, in place of one that is drawn"},
    movieSizeOption,
    setOption,
    keysOption,
    settingsOption,
    noSettingsOption,
    serverOption,
}};

} // namespace

const Command shareCommand{.name = "share",
                           .operands = "EPISODE",
                           .summary = "Publishes the episode on the sharing service, with a movie "
                                      "and a still, and prints its page's address.",
                           .options = shareOptions,
                           .run = share};

} // namespace tarnwick
