#include "player/Performances/ReplayFiles.h"

#include "TarnwickCore/CommandLine/ChannelWord.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickRender/SoundFileTap.h"
#include "player/Compiling/LiveCompiler.h"
#include "player/Drawing/SourceChannel.h"
#include "player/Model/DocumentFile.h"
#include "player/Sound/FileSound.h"

#include <chrono>
#include <set>
#include <span>
#include <thread>
#include <utility>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds longestWait{50}; // of a frame, for a sound that is decoded

bool isEpisode(const std::string& name, const PerformedFile& file) {
    return name != soundInput && channelKindOf(file.file) == ChannelKind::episode;
}

// Throws DocumentFileError. A null program does not compile.
ReplayEpisodes::Drawn drawn(const fs::path& file, const std::shared_ptr<gpu::Device>& device) {
    const DocumentContent content = readDocumentFiles(file);
    const auto episode =
        std::make_shared<const Episode>(Episode::of(content.text.text, file.string()));
    const CompileResult result = compiled({.episode = episode, .device = device});
    if (!result.program)
        return {};
    return {result.program, content.beside.settings.fitted(result.program->params())};
}

// Gives the same episode for the same file with the same channels, so that its state goes on.
class Sources {
  public:
    explicit Sources(const ReplayEpisodes& episodes) : episodes_(episodes.episodes) {}

    // `before`: the name of the episode that shows them, with a point.
    ChannelSources channelsOf(const PerformedInputs& inputs, const std::string& before = {}) {
        ChannelSources channels;
        for (std::size_t index = 0; index < channelCount; ++index) {
            const std::string name = before + std::to_string(index);
            const auto input = inputs.find(name);
            if (input == inputs.end())
                continue;
            if (isEpisode(name, input->second))
                channels[index].episode = episodeOf(inputs, name);
            else
                channels[index].file = input->second.file;
        }
        return channels;
    }

  private:
    // Null for an episode that cannot be drawn.
    std::shared_ptr<const ChannelEpisode> episodeOf(const PerformedInputs& inputs,
                                                    const std::string& name) {
        const fs::path file = inputs.at(name).file;
        const auto found = episodes_.find(file);
        if (found == episodes_.end())
            return nullptr;
        ChannelSources channels = channelsOf(inputs, name + ".");
        auto& made = made_[{file, channels}];
        if (!made)
            made = std::make_shared<const ChannelEpisode>(
                ChannelEpisode{.program = found->second.program,
                               .timeline = found->second.settings,
                               .channels = std::move(channels)});
        return made;
    }

    const std::map<fs::path, ReplayEpisodes::Drawn>& episodes_;
    std::map<std::pair<fs::path, ChannelSources>, std::shared_ptr<const ChannelEpisode>> made_;
};

// Is destroyed on a thread of its own: it waits for the file that is read.
std::shared_ptr<FileSound> soundOf(const fs::path& file,
                                   const std::function<void(const std::string&)>& tell) {
    return {new FileSound(file, tell),
            [](FileSound* sound) { std::thread([sound] { delete sound; }).detach(); }};
}

// Opens no file on the thread that draws.
FileOpeners openersOf(const std::function<void(const std::string&)>& tell) {
    return {.channel =
                [tell](const fs::path& file, gpu::Device& device) {
                    return std::make_unique<SourceChannel>(file, tell, device);
                },
            .sound =
                [tell](const fs::path& file, gpu::Device& device) {
                    return SoundFileTap::make(
                        [sound = soundOf(file, tell)](double start, double rate,
                                                      std::span<float> stereo) {
                            return sound->samplesWithin(longestWait, start, rate, stereo);
                        },
                        device);
                }};
}

} // namespace

ReplayEpisodes readReplayEpisodes(const Performance& performance,
                                  const std::shared_ptr<gpu::Device>& device) {
    std::set<fs::path> files;
    for (const PerformedInputs& inputs : inputSets(performance))
        for (const auto& [name, file] : inputs)
            if (isEpisode(name, file))
                files.insert(file.file);
    ReplayEpisodes read;
    for (const fs::path& file : files)
        try {
            ReplayEpisodes::Drawn one = drawn(file, device);
            if (one.program)
                read.episodes[file] = std::move(one);
            else
                read.sentences.push_back(file.string() +
                                         " does not compile, so its channel is black.");
        } catch (const DocumentFileError& error) {
            read.sentences.emplace_back(error.what());
        }
    return read;
}

std::shared_ptr<const ReplayedInputs>
replayedInputsOf(const Performance& performance, const ReplayEpisodes& episodes,
                 const std::function<void(const std::string&)>& tell) {
    auto made = std::make_shared<ReplayedInputs>();
    Sources sources(episodes);
    for (PerformedInputs& inputs : inputSets(performance)) {
        InputSources set{
            .channels = sources.channelsOf(inputs), .hearsOwnSound = true, .open = openersOf(tell)};
        if (const auto sound = inputs.find(soundInput); sound != inputs.end())
            set.soundFile = sound->second.file;
        made->push_back({std::move(inputs), std::move(set)});
    }
    return made;
}

} // namespace tarnwick::player
