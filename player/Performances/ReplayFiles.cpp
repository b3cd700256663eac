#include "player/Performances/ReplayFiles.h"

#include "TarnwickCore/CommandLine/ChannelWord.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/InputFiles.h"
#include "player/Compiling/LiveCompiler.h"
#include "player/Model/DocumentFile.h"
#include "player/Sound/FileSound.h"

#include <set>
#include <thread>
#include <utility>
#include <variant>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

// Numbers of channel episodes, which are not open documents.
constexpr std::uint64_t firstNumber = std::uint64_t{1} << 63;

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
    return {result.program, std::make_shared<const Settings>(
                                content.beside.settings.fitted(result.program->params()))};
}

class Sets {
  public:
    Sets(const ReplayEpisodes& episodes, std::uint64_t document,
         std::function<void(const std::string&)> tell)
        : episodes_(episodes.episodes), document_(document), tell_(std::move(tell)) {}

    std::shared_ptr<const LiveChannels> channelsOf(const PerformedInputs& inputs) {
        auto made = std::make_shared<LiveChannels>();
        made->document = document_;
        made->channels = channelsOf(inputs, "", *made);
        return made;
    }

  private:
    // `before`: the name of the episode that shows them, with a point.
    LiveChannelSet channelsOf(const PerformedInputs& inputs, const std::string& before,
                              LiveChannels& all) {
        LiveChannelSet channels;
        for (std::size_t index = 0; index < channelCount; ++index) {
            const std::string name = before + std::to_string(index);
            const auto input = inputs.find(name);
            if (input == inputs.end())
                continue;
            if (isEpisode(name, input->second))
                channels[index].document = episodeOf(inputs, name, all);
            else
                channels[index].source = sourceOf(input->second.file);
        }
        return channels;
    }

    // 0 for an episode that cannot be drawn.
    std::uint64_t episodeOf(const PerformedInputs& inputs, const std::string& name,
                            LiveChannels& all) {
        const fs::path file = inputs.at(name).file;
        const auto found = episodes_.find(file);
        if (found == episodes_.end())
            return 0;
        const LiveEpisode episode{.program = found->second.program,
                                  .settings = found->second.settings,
                                  .channels = channelsOf(inputs, name + ".", all)};
        const std::uint64_t number = numberOf(file, episode.channels);
        all.episodes[number] = episode;
        return number;
    }

    // The same for the same episode with the same channels, so that its state goes on.
    std::uint64_t numberOf(const fs::path& file, const LiveChannelSet& channels) {
        for (std::size_t at = 0; at < numbered_.size(); ++at)
            if (numbered_[at].first == file && numbered_[at].second == channels)
                return firstNumber + at;
        numbered_.emplace_back(file, channels);
        return firstNumber + numbered_.size() - 1;
    }

    std::shared_ptr<FrameSource> sourceOf(const fs::path& file) {
        auto& source = sources_[file];
        if (!source)
            source = std::make_shared<FrameSource>(SourceKind::file, file, tell_);
        return source;
    }

    const std::map<fs::path, ReplayEpisodes::Drawn>& episodes_;
    std::uint64_t document_;
    std::function<void(const std::string&)> tell_;
    std::map<fs::path, std::shared_ptr<FrameSource>> sources_;
    std::vector<std::pair<fs::path, LiveChannelSet>> numbered_;
};

// Is destroyed on a thread of its own: it waits for the file that is read.
std::shared_ptr<FileSound> soundOf(const fs::path& file,
                                   const std::function<void(const std::string&)>& tell) {
    return {new FileSound(file, tell),
            [](FileSound* sound) { std::thread([sound] { delete sound; }).detach(); }};
}

// Hears all sound files of the performance.
auto hearingOf(const Performance& performance,
               const std::function<void(const std::string&)>& tell) {
    std::map<std::string, std::shared_ptr<FileSound>> sounds;
    for (const PerformedInputs& inputs : inputSets(performance))
        if (const auto sound = inputs.find(soundInput); sound != inputs.end()) {
            auto& opened = sounds[sound->second.file];
            if (!opened)
                opened = soundOf(sound->second.file, tell);
        }
    return [sounds](const std::string& file, double start, double rate, std::span<float> stereo) {
        const auto sound = sounds.find(file);
        return sound != sounds.end() && sound->second->samples(start, rate, stereo);
    };
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
                 std::uint64_t document, const std::function<void(const std::string&)>& tell) {
    auto made = std::make_shared<ReplayedInputs>();
    Sets sets(episodes, document, tell);
    PerformedState state{.inputs = performance.start.inputs};
    made->sets.push_back({0, sets.channelsOf(state.inputs)});
    for (const Performance::Change& change : performance.changes) {
        if (!std::holds_alternative<Performance::Input>(change.what))
            continue;
        apply(change.what, state);
        if (made->sets.back().from < change.time)
            made->sets.push_back({change.time, nullptr});
        made->sets.back().channels = sets.channelsOf(state.inputs);
    }
    made->hear = hearingOf(performance, tell);
    return made;
}

} // namespace tarnwick::player
