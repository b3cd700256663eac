#include "TarnwickRender/Channels/EpisodeInputs.h"

#include "TarnwickRender/Channels/EpisodeChannel.h"
#include "TarnwickRender/Channels/FileChannel.h"
#include "TarnwickRender/SoundFileTap.h"
#include "TarnwickRender/SoundTap.h"

namespace tarnwick {
namespace {

std::unique_ptr<Channel> openChannel(const ChannelSource& source, gpu::Device& device,
                                     std::int64_t width, std::int64_t height,
                                     const FileOpeners& open) {
    if (const ChannelEpisode* episode = source.episode.get())
        return std::make_unique<EpisodeChannel>(
            episode->program, episode->timeline,
            EpisodeInputs::make(
                episode->program, device, width, height,
                {.channels = episode->channels, .hearsOwnSound = true, .open = open}),
            device, width, height);
    return open.channel ? open.channel(source.file, device)
                        : std::make_unique<FileChannel>(source.file, device);
}

std::unique_ptr<FrameInputs> openSound(const std::filesystem::path& file, gpu::Device& device,
                                       const FileOpeners& open) {
    return open.sound ? open.sound(file, device) : SoundFileTap::make(file, device);
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
        made->sound_ = openSound(sources.soundFile, device, sources.open);
    else if (sources.hearsOwnSound)
        made->sound_ = SoundTap::make(program, device);
    for (std::size_t index = 0; index < channelCount; ++index) {
        const ChannelSource& source = sources.channels[index];
        if (source.isNone())
            continue;
        std::shared_ptr<Channel>& channel = open[source];
        if (!channel)
            channel = openChannel(source, device, width, height, sources.open);
        made->channels_[index] = channel;
    }
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

bool EpisodeInputs::prepareSound(double time) {
    return !sound_ || sound_->prepareSound(time);
}

// All channels read and draw at the same time.
bool EpisodeInputs::prepareChannels(double time) {
    bool areReady = true;
    for (const auto& channel : channels_)
        areReady &= !channel || channel->prepare(time);
    return areReady;
}

} // namespace tarnwick
