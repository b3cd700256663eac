#include "programs/Episode/EpisodeChannels.h"

#include "TarnwickBase/Quoted.h"
#include "TarnwickCore/CommandLine/ChannelWord.h"
#include "TarnwickCore/Performance/InputFiles.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"

#include <algorithm>
#include <map>

namespace tarnwick {
namespace {

void checkReads(const Episode& episode) {
    if (!episode.shader.usesInputs)
        failure(episode.path +
                " reads no channels: its shade has no parameter of the type Inputs.");
}

ChannelWord wordOf(const std::string& text) {
    auto word = channelWord(text);
    if (!word)
        misuse("--channel is " + tarnwick::quoted(text) +
               ", which is not N=FILE with N from 0 to 3, or 3.0 for channel 0 of the episode that "
               "channel 3 shows.");
    return *std::move(word);
}

std::unique_ptr<NamedChannel> channelAt(const std::filesystem::path& place) {
    auto made = std::make_unique<NamedChannel>();
    std::error_code error;
    switch (channelKindOf(place)) {
    case ChannelKind::camera:
        misuse(place.string() +
               " is a camera. A camera has no picture of each time of the episode.");
    case ChannelKind::episode:
        made->episode = episodeAt(place.string());
        made->settings = settingsBesideOf(*made->episode);
        break;
    case ChannelKind::file:
        if (!std::filesystem::exists(place, error))
            misuse(place.string() + " is missing.");
        made->file = place;
        break;
    }
    return made;
}

// The place of a channel among `channels` and those of the episodes that they show.
std::unique_ptr<NamedChannel>& placeOf(const ChannelWord& word, const std::string& text,
                                       NamedChannels& channels) {
    NamedChannels* inner = &channels;
    for (std::size_t depth = 0; depth + 1 < word.address.size(); ++depth) {
        NamedChannel* shown = (*inner)[word.address[depth]].get();
        if (shown == nullptr || !shown->episode)
            misuse("--channel is " + tarnwick::quoted(text) +
                   ", but no episode is given for channel " + text.substr(0, 2 * depth + 1) + ".");
        checkReads(*shown->episode);
        inner = &shown->channels;
    }
    return (*inner)[word.address.back()];
}

// The channels of a performance; those of an episode that is missing are left out.
NamedChannels namedChannelsOf(const PerformedInputs& inputs) {
    NamedChannels channels;
    for (const auto& [name, file] : inputs) { // an episode before its channels
        const auto word = channelWord(name + "=" + file.file);
        if (!word)
            continue; // the sound
        NamedChannels* inner = &channels;
        for (std::size_t depth = 0; inner != nullptr && depth + 1 < word->address.size(); ++depth) {
            NamedChannel* shown = (*inner)[word->address[depth]].get();
            const bool isReading =
                shown != nullptr && shown->episode && shown->episode->shader.usesInputs;
            inner = isReading ? &shown->channels : nullptr;
        }
        if (inner != nullptr)
            (*inner)[word->address.back()] = channelAt(word->place);
    }
    return channels;
}

// Words that are the same for the same files.
std::string wordsOf(const NamedChannels& channels) {
    std::string words;
    for (const auto& channel : channels) {
        if (channel)
            words += channel->file.string() + (channel->episode ? channel->episode->path : "") +
                     wordsOf(channel->channels);
        words += '\n';
    }
    return words;
}

// Compiles each episode once.
class ChannelCompiler {
  public:
    explicit ChannelCompiler(gpu::Device& device) : device_(device) {}

    ChannelSources sourcesOf(const NamedChannels& channels) {
        ChannelSources sources;
        for (std::size_t index = 0; index < channelCount; ++index) {
            const NamedChannel* channel = channels[index].get();
            if (channel == nullptr)
                continue;
            sources[index].file = channel->file;
            if (channel->episode)
                sources[index].episode = episodeOf(*channel);
        }
        return sources;
    }

  private:
    std::shared_ptr<const ChannelEpisode> episodeOf(const NamedChannel& channel) {
        auto& made = episodes_[channel.episode->path + '\n' + wordsOf(channel.channels)];
        if (!made)
            made = std::make_shared<const ChannelEpisode>(
                ChannelEpisode{.program = programOf(*channel.episode, device_),
                               .timeline = channel.settings,
                               .channels = sourcesOf(channel.channels)});
        return made;
    }

    gpu::Device& device_;
    std::map<std::string, std::shared_ptr<const ChannelEpisode>> episodes_;
};

} // namespace

NamedChannels episodeChannelsOf(const Arguments& arguments, const Episode& episode) {
    std::vector<std::string> texts(arguments.values("--channel").begin(),
                                   arguments.values("--channel").end());
    if (!texts.empty())
        checkReads(episode);
    // The episodes before their channels.
    std::ranges::stable_sort(texts, {},
                             [](const std::string& text) { return wordOf(text).address.size(); });
    NamedChannels channels;
    for (const std::string& text : texts) {
        const ChannelWord word = wordOf(text);
        placeOf(word, text, channels) = channelAt(word.place);
    }
    return channels;
}

std::vector<std::pair<std::string, std::string>> givenChannels(const Arguments& arguments) {
    std::vector<std::pair<std::string, std::string>> given;
    for (const std::string& text : arguments.values("--channel"))
        given.emplace_back(text.substr(0, text.find('=')), wordOf(text).place.string());
    std::ranges::stable_sort(given, {}, [](const auto& one) { return one.first.size(); });
    return given;
}

ChannelSources channelSourcesOf(const NamedChannels& channels, gpu::Device& device) {
    return ChannelCompiler(device).sourcesOf(channels);
}

std::vector<NamedInputs> performedChannelsOf(const Timeline& timeline, const Episode& episode) {
    std::vector<NamedInputs> sets;
    const Performance* performance = timeline.performance().get();
    if (performance == nullptr || !episode.shader.usesInputs)
        return sets;
    for (PerformedInputs& inputs : inputSets(*performance)) {
        NamedChannels channels = namedChannelsOf(inputs);
        sets.push_back({std::move(inputs), std::move(channels)});
    }
    return sets;
}

std::vector<PerformedSource> performedSourcesOf(const std::vector<NamedInputs>& sets,
                                                gpu::Device& device) {
    ChannelCompiler compiler(device);
    std::vector<PerformedSource> sources;
    for (const NamedInputs& set : sets) {
        InputSources& made =
            sources.emplace_back(set.inputs, InputSources{.hearsOwnSound = true}).sources;
        made.channels = compiler.sourcesOf(set.channels);
        if (const auto sound = set.inputs.find(soundInput); sound != set.inputs.end())
            made.soundFile = sound->second.file;
    }
    return sources;
}

} // namespace tarnwick
