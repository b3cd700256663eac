#include "TarnwickServe/SiteBuilder.h"

#include "TarnwickCore/Animation/DocumentError.h"
#include "TarnwickCore/Editor/FileWatcher.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickServe/SiteEpisode.h"
#include "TarnwickWeb/WebDocument.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using Stamp = FileWatcher::Stamp;

constexpr std::size_t mostEpisodeBytes = 1 << 20, mostSettingsBytes = 4 << 20;
constexpr std::chrono::milliseconds lookInterval{150};

// The states of an episode's files, which two looks compare.
struct FileStamps {
    std::optional<Stamp> episode, settings;

    bool operator==(const FileStamps&) const = default;
};

struct Watched {
    FileStamps found;               // in the last look
    std::optional<FileStamps> read; // of the texts that were compiled
    SiteEpisode shown;

    bool isStale() const { return read != found; }
};

std::string settingsName(const std::string& episode) {
    return fs::path(episode).replace_extension(".json").string();
}

bool isSavedLater(const Watched& one, const Watched& other) {
    const auto time = [](const Watched& each) {
        const auto saved = each.found.episode.value_or(Stamp{}).mtime;
        return std::pair(saved.s, saved.ns);
    };
    return time(one) > time(other);
}

ShownFinding warning(const std::string& file, const std::string& message) {
    return {.severity = "warning", .message = message, .file = file};
}

} // namespace

struct SiteBuilder::State {
    const SitePlace place;
    const EpisodeCompiler compile;
    SiteNews& news;
    const std::function<void(const EpisodeReport&)> report;

    // Of the thread:
    std::map<std::string, Watched> watched; // by file name

    std::jthread thread;

    State(SitePlace place_, EpisodeCompiler compile_, SiteNews& news_,
          std::function<void(const EpisodeReport&)> report_)
        : place(std::move(place_)), compile(std::move(compile_)), news(news_),
          report(std::move(report_)), thread([this](std::stop_token stop) { run(stop); }) {}

    void run(const std::stop_token& stop) {
        std::mutex mutex;
        std::condition_variable_any never;
        for (bool isFirst = true; !stop.stop_requested(); isFirst = false) {
            if (look() || isFirst)
                publish();
            if (Watched* next = nextStale()) {
                if (build(*next))
                    publish();
                continue;
            }
            std::unique_lock lock(mutex);
            never.wait_for(lock, stop, lookInterval, [] { return false; });
        }
    }

    // Whether episodes appeared or disappeared.
    bool look() {
        bool hasChanged = false;
        std::map<std::string, Watched> next;
        for (const std::string& name : place.episodeNames()) {
            const FileStamps found{FileWatcher::stamp(place.folder / name),
                                   FileWatcher::stamp(place.folder / settingsName(name))};
            const auto known = watched.find(name);
            // A file that is saved by renaming another over it is missing for a moment, and the one
            // episode of a site stays while its file is missing.
            if (!found.episode && place.only.empty())
                continue;
            Watched one = known == watched.end() ? made(name) : std::move(known->second);
            hasChanged |= known == watched.end();
            if (found.episode)
                one.found = found;
            next.emplace(name, std::move(one));
        }
        for (const auto& [name, one] : watched)
            if (!next.contains(name)) {
                hasChanged = true;
                report({.kind = EpisodeReport::Kind::removed, .name = name});
            }
        watched = std::move(next);
        return hasChanged;
    }

    static Watched made(const std::string& name) {
        return {.shown = {.name = name, .title = fs::path(name).stem().string()}};
    }

    // The one that was saved last.
    Watched* nextStale() {
        Watched* next = nullptr;
        for (auto& [name, one] : watched)
            if (one.isStale() && (!next || isSavedLater(one, *next)))
                next = &one;
        return next;
    }

    // False if the file is changing while it is read; the next look finds it again.
    bool build(Watched& one) {
        const std::string& name = one.shown.name;
        SitePlace::Read text = place.read(name, mostEpisodeBytes);
        const SitePlace::Read settings = one.found.settings
                                             ? place.read(settingsName(name), mostSettingsBytes)
                                             : SitePlace::Read{};
        if (FileWatcher::stamp(place.folder / name) != one.found.episode)
            return false;
        one.read = one.found;
        const auto began = std::chrono::steady_clock::now();
        EpisodeOutcome outcome = text.failure.empty()
                                     ? compiled(one, std::move(text.bytes), settings)
                                     : EpisodeOutcome{.failure = std::move(text.failure)};
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
        report({.name = name, .outcome = outcome, .seconds = took.count()});
        one.shown.take(std::move(outcome));
        return true;
    }

    EpisodeOutcome compiled(Watched& one, std::string text, const SitePlace::Read& settings) {
        const Episode episode = Episode::of(withoutByteOrderMark(std::move(text)), one.shown.name);
        one.shown.title = webTitle(episode);
        one.shown.teaches = episode.meta.teaches;
        std::vector<ShownFinding> warnings;
        const Settings fitted = settingsOf(episode, settings, warnings);
        EpisodeOutcome outcome = outcomeOf(episode, fitted);
        outcome.findings.insert(outcome.findings.end(), warnings.begin(), warnings.end());
        return outcome;
    }

    // No exception may leave the thread.
    EpisodeOutcome outcomeOf(const Episode& episode, const Settings& settings) const {
        try {
            return compile(episode, settings);
        } catch (const std::exception& error) {
            return {.failure = episode.path + " cannot be compiled: " + error.what() + "."};
        }
    }

    // The document beside the episode. A broken one must not hide the picture, so its fault is a
    // warning.
    Settings settingsOf(const Episode& episode, const SitePlace::Read& read,
                        std::vector<ShownFinding>& warnings) const {
        const std::string file = settingsName(episode.path);
        if (!read.failure.empty()) {
            warnings.push_back(warning(file, read.failure));
            return {};
        }
        if (read.bytes.empty())
            return {};
        try {
            const Settings settings = Settings::decode(read.bytes);
            for (const std::string& misfit : settings.misfits(episode.params(), episode.path))
                warnings.push_back(warning(file, misfit));
            return settings.fitted(episode.params());
        } catch (const DocumentError& error) {
            warnings.push_back(warning(file, error.what()));
            return {};
        }
    }

    void publish() {
        std::vector<SiteEpisode> episodes;
        for (const auto& [name, one] : watched)
            episodes.push_back(one.shown);
        news.publish(siteOf(episodes, !place.only.empty()));
    }
};

SiteBuilder::SiteBuilder(SitePlace place, EpisodeCompiler compile, SiteNews& news,
                         std::function<void(const EpisodeReport&)> report)
    : state_(
          std::make_unique<State>(std::move(place), std::move(compile), news, std::move(report))) {}

SiteBuilder::~SiteBuilder() = default;

} // namespace tarnwick
