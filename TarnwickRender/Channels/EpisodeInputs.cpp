#include "TarnwickRender/Channels/EpisodeInputs.h"

#include "TarnwickRender/Channels/EpisodeChannel.h"
#include "TarnwickRender/Channels/FileChannel.h"
#include "TarnwickRender/SoundFileTap.h"
#include "TarnwickRender/SoundTap.h"

namespace tarnwick {
namespace {

std::unique_ptr<Channel> openChannel(const ChannelSource& source, gpu::Device& device,
                                     std::int64_t width, std::int64_t height) {
    if (const ChannelEpisode* episode = source.episode.get())
        return std::make_unique<EpisodeChannel>(
            episode->program, episode->timeline,
            EpisodeInputs::make(episode->program, device, width, height,
                                {.channels = episode->channels, .hearsOwnSound = true}),
            device, width, height);
    return std::make_unique<FileChannel>(source.file, device);
}

std::shared_ptr<Channel> channelOf(const ChannelSource& source, gpu::Device& device,
                                   std::int64_t width, std::int64_t height, OpenChannels& open) {
    if (source.isNone())
        return nullptr;
    std::shared_ptr<Channel>& channel = open[source];
    if (!channel)
        channel = openChannel(source, device, width, height);
    return channel;
}

} // namespace

std::shared_ptr<FrameInputs>
EpisodeInputs::make(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                    std::int64_t width, std::int64_t height, const InputSources& sources) {
    OpenChannels open;
    return make(program, device, width, height, sources, open);
}

std::shared_ptr<FrameInputs>
EpisodeInputs::make(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                    std::int64_t width, std::int64_t height, const InputSources& sources,
                    OpenChannels& open) {
    if (!program->usesInputs())
        return nullptr;
    std::shared_ptr<EpisodeInputs> made(new EpisodeInputs);
    if (!sources.soundFile.empty())
        made->sound_ = SoundFileTap::make(sources.soundFile, device);
    else if (sources.hearsOwnSound)
        made->sound_ = SoundTap::make(program, device);
    for (std::size_t index = 0; index < channelCount; ++index)
        made->channels_[index] = channelOf(sources.channels[index], device, width, height, open);
    return made;
}

ShaderInputs EpisodeInputs::inputs(double time, const ParamValues& values) {
    return sound_ ? sound_->inputs(time, values) : ShaderInputs::none();
}

void EpisodeInputs::reset() {
    if (sound_)
        sound_->reset();
}

std::vector<const gpu::Texture*> EpisodeInputs::channels(double time) {
    std::vector<const gpu::Texture*> textures;
    for (const auto& channel : channels_)
        textures.push_back(channel ? channel->at(time) : nullptr);
    return textures;
}

} // namespace tarnwick
