// tarnwick web: episodes as pages that browsers draw.
#include "TarnwickWeb/Runtime.h"
#include "TarnwickWeb/WebDocument.h"
#include "TarnwickWeb/WebError.h"
#include "TarnwickWeb/WebPage.h"
#include "programs/CommandLine/NewFolder.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Service/ShareMedia.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view galleryName = "index";
constexpr PixelSize fallbackSize{.width = 960, .height = 540};

struct WebWork {
    Episode episode;
    Settings settings;
    std::string name; // of its files, without an extension
};

std::vector<WebWork> workOf(const Arguments& arguments) {
    const auto& paths = arguments.operands();
    if (paths.size() > 1 && arguments.has("--settings"))
        misuse("--settings is for one episode, not for " + std::to_string(paths.size()) + ".");
    std::vector<WebWork> work;
    for (const std::string_view path : paths) {
        Episode episode = episodeAt(path);
        Settings settings = episodeSettingsOf(arguments, episode);
        const std::string name = fs::path(path).stem().string();
        if (paths.size() > 1 && name == galleryName)
            misuse(std::string(path) + " must have another name than the page of the gallery, " +
                   std::string(galleryName) + ".");
        const auto same = std::ranges::find(work, name, &WebWork::name);
        if (same != work.end())
            misuse(std::string(path) + " and " + same->episode.path +
                   " must have different names, because their pages have them.");
        work.push_back({std::move(episode), std::move(settings), name});
    }
    return work;
}

std::string documentOf(const WebWork& one) {
    checkCompiles(one.episode);
    try {
        return webDocument(one.episode, one.settings, WebProgram::make(one.episode));
    } catch (const WebError& error) {
        failure(error.what());
    }
}

struct FallbackForm {
    bool hasMovie = false;
    bool isInPage = false; // instead of files beside it
};

WebFallback fallbackOf(const WebWork& one, gpu::Device& device, const FallbackForm& form,
                       std::vector<NewFile>& files) {
    const SharedEpisode shared{.episode = one.episode,
                               .program = programOf(one.episode, device),
                               .size = fallbackSize,
                               .settings = one.settings};
    const auto placed = [&](std::string bytes, const char* extension, std::string_view type) {
        if (form.isInPage)
            return dataAddress(type, bytes);
        const std::string name = one.name + extension;
        files.push_back({name, std::move(bytes)});
        return webAddress(name);
    };
    WebFallback made{.still = placed(sharedThumb(shared, device), ".jpg", "image/jpeg")};
    if (form.hasMovie)
        made.movie = placed(sharedLoop(shared, device), ".mp4", "video/mp4");
    return made;
}

Status web(const Arguments& arguments) {
    const fs::path folder = arguments.value("-o").value();
    checkNewFolder(folder);
    const std::vector<WebWork> work = workOf(arguments);
    const bool isGallery = work.size() > 1, isSingleFile = arguments.has("--single-file");
    const bool hasMovie = arguments.has("--fallback");
    const auto device = hasMovie || arguments.has("--still") ? drawingDevice() : nullptr;
    std::vector<NewFile> files;
    std::vector<WebGalleryEntry> entries;
    for (const WebWork& one : work) {
        WebEpisode episode{.title = webTitle(one.episode),
                           .teaches = one.episode.meta.teaches,
                           .document = documentOf(one)};
        if (device)
            episode.fallback =
                fallbackOf(one, *device, {.hasMovie = hasMovie, .isInPage = isSingleFile}, files);
        const std::string page = std::string(isGallery ? one.name : galleryName) + ".html";
        files.push_back({page, webPage(episode)});
        entries.push_back({.title = episode.title,
                           .teaches = episode.teaches,
                           .address = webAddress(page),
                           .still = episode.fallback ? episode.fallback->still : ""});
        if (!isSingleFile)
            files.push_back({one.name + ".json", std::move(episode.document)});
    }
    if (isGallery)
        files.push_back({std::string(galleryName) + ".html", webGallery(entries)});
    if (!isSingleFile)
        files.push_back({"tarnwick-episode.js", std::string(webRuntime())});
    writeNewFolder(folder, files);
    for (const NewFile& file : files)
        print((folder / file.path).string() + "\n");
    return Status::done;
}

constexpr auto webOptions = joined(
    std::array<Option, 4>{{
        {.name = "-o",
         .value = "FOLDER",
         .help = "the pages, a new folder",
         .values = FileName{},
         .isRequired = true},
        {.name = "--single-file",
         .help = "only pages; without it the folder also has the files for the element "
                 "<tarnwick-episode> of other pages"},
        {.name = "--still",
         .help = "draw a still, for the gallery, and for browsers that cannot draw the "
                 "episode"},
        {.name = "--fallback", .help = "draw a still, and a movie, which such browsers repeat"},
    }},
    valueOptions);

} // namespace

const Command webCommand{.name = "web",
                         .operands = "EPISODE...",
                         .summary = "Writes pages on which browsers draw the episodes, with their "
                                    "sliders and sound.",
                         .options = webOptions,
                         .run = web};

} // namespace tarnwick
