#include "programs/Episode/EpisodeChannels.h"

#include "TarnwickBase/Quoted.h"
#include "TarnwickCore/CommandLine/ChannelWord.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"
#include "programs/Terminal/TerminalText.h"

#include <algorithm>

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
        misuse(terminalText(place.string() +
                            " is a camera. A camera has no picture of each time of the episode."));
    case ChannelKind::episode:
        made->episode = episodeAt(place.string());
        made->settings = settingsBesideOf(*made->episode);
        break;
    case ChannelKind::file:
        if (!std::filesystem::exists(place, error))
            misuse(terminalText(place.string() + " is missing."));
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

// A channel of --channel replaces the performed one, and the channels of the episode that it
// showed.
void addPerformed(std::span<const InputFile> performed, std::vector<std::string>& texts) {
    const std::vector<std::string> given = texts;
    for (const InputFile& input : performed) {
        const bool isReplaced = std::ranges::any_of(given, [&](const std::string& text) {
            return text.substr(0, 1) == input.name.substr(0, 1);
        });
        if (input.name != "audio" && !isReplaced)
            texts.push_back(input.name + "=" + input.file.string());
    }
}

} // namespace

NamedChannels episodeChannelsOf(const Arguments& arguments, const Episode& episode,
                                std::span<const InputFile> performed) {
    std::vector<std::string> texts(arguments.values("--channel").begin(),
                                   arguments.values("--channel").end());
    addPerformed(performed, texts);
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

ChannelSources channelSourcesOf(const NamedChannels& channels, gpu::Device& device) {
    ChannelSources sources;
    for (std::size_t index = 0; index < channelCount; ++index) {
        const NamedChannel* channel = channels[index].get();
        if (channel == nullptr)
            continue;
        sources[index].file = channel->file;
        if (channel->episode)
            sources[index].episode = std::make_shared<const ChannelEpisode>(
                ChannelEpisode{.program = programOf(*channel->episode, device),
                               .timeline = channel->settings,
                               .channels = channelSourcesOf(channel->channels, device)});
    }
    return sources;
}

} // namespace tarnwick
