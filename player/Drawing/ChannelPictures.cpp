#include "player/Drawing/ChannelPictures.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {

struct ChannelPictures::Bringing {
    SceneMoment moment;
    PixelSize size;
    gpu::CommandQueue& queue;
    const Draw& draw;
    std::set<std::uint64_t> begun{};
};

void ChannelPictures::use(std::shared_ptr<gpu::Device> device) {
    copies_.clear();
    episodes_.clear();
    shown_ = nullptr;
    device_ = std::move(device);
}

void ChannelPictures::use(std::shared_ptr<const LiveChannels> channels) {
    if (channels == channels_)
        return;
    channels_ = std::move(channels);
    sources_.clear();
    const auto add = [this](const LiveChannelSet& set) {
        for (const LiveChannel& channel : set)
            if (channel.source)
                sources_.insert(channel.source);
    };
    if (channels_) {
        add(channels_->channels);
        for (const auto& [document, episode] : channels_->episodes)
            add(episode.channels);
    }
    std::erase_if(copies_, [this](const auto& copy) {
        return std::ranges::none_of(sources_,
                                    [&](const auto& source) { return source.get() == copy.first; });
    });
    std::erase_if(episodes_, [this](const auto& drawn) {
        return !channels_ || !channels_->episodes.contains(drawn.first);
    });
}

void ChannelPictures::bring(const SceneMoment& moment, const PixelSize& size,
                            const gpu::Texture* shown, gpu::CommandQueue& queue, const Draw& draw) {
    shown_ = shown;
    if (!channels_)
        return;
    copySources(moment.time);
    Bringing bringing{moment, size, queue, draw};
    for (const LiveChannel& channel : channels_->channels)
        drawEpisode(channel.document, bringing);
}

// The rest of the pictures is copied by the next frame.
void ChannelPictures::copySources(double time) {
    std::size_t copied = 0;
    for (const auto& source : sources_) {
        source->follow(time);
        Copy& into = copies_[source.get()];
        if (copied < mostCopied && copy(*source, into))
            copied +=
                into.texture.texture()->height() * std::size_t{into.texture.texture()->width()} * 4;
    }
}

// Returns whether there was a new picture.
bool ChannelPictures::copy(FrameSource& source, Copy& into) {
    const FrameSource::Frame frame = source.newest();
    if (!frame.picture || frame.number == into.number)
        return false;
    into.number = frame.number;
    return into.texture.show(*frame.picture, *device_);
}

// Draws the episodes that it reads first. One that was begun already gives its frame before.
void ChannelPictures::drawEpisode(std::uint64_t document, Bringing& bringing) {
    const auto found = channels_->episodes.find(document);
    if (found == channels_->episodes.end() || !bringing.begun.insert(document).second)
        return;
    const LiveEpisode& episode = found->second;
    for (const LiveChannel& channel : episode.channels)
        drawEpisode(channel.document, bringing);
    Drawn& drawn = episodes_[document];
    Scene* scene = sceneOf(drawn, episode, bringing.size);
    if (scene == nullptr)
        return;
    SceneMoment moment = bringing.moment;
    moment.settings = episode.settings;
    moment.mouse.reset();
    moment.channels = texturesOf(episode.channels);
    drawn.isBehind = scene->warm(moment, bringing.queue).has_value();
    if (drawn.isBehind || !bringing.draw(*scene, moment))
        return;
    drawn.isBehind = scene->isBehind(moment);
    if (scene == drawn.next.get())
        drawn.scene = std::move(drawn.next);
}

// The scene to draw: a new program or size is drawn while the picture of the old one is shown.
Scene* ChannelPictures::sceneOf(Drawn& drawn, const LiveEpisode& episode, const PixelSize& size) {
    const auto fits = [&](const std::unique_ptr<Scene>& scene) {
        return scene && scene->program() == episode.program && scene->size() == size;
    };
    if (fits(drawn.scene)) {
        drawn.next.reset();
        return drawn.scene.get();
    }
    if (!fits(drawn.next) && drawn.failed != episode.program) {
        drawn.next = Scene::make(episode.program, device_, size);
        drawn.failed = drawn.next ? nullptr : episode.program;
    }
    return fits(drawn.next) ? drawn.next.get() : nullptr;
}

std::vector<const gpu::Texture*> ChannelPictures::textures() const {
    return channels_ ? texturesOf(channels_->channels) : std::vector<const gpu::Texture*>();
}

std::vector<const gpu::Texture*> ChannelPictures::texturesOf(const LiveChannelSet& channels) const {
    std::vector<const gpu::Texture*> textures;
    for (const LiveChannel& channel : channels)
        textures.push_back(textureOf(channel));
    return textures;
}

const gpu::Texture* ChannelPictures::textureOf(const LiveChannel& channel) const {
    if (const auto copy = copies_.find(channel.source.get()); copy != copies_.end())
        return copy->second.texture.texture();
    if (channel.document != 0 && channel.document == channels_->document)
        return shown_;
    const auto drawn = episodes_.find(channel.document);
    return drawn != episodes_.end() && drawn->second.scene ? drawn->second.scene->picture()
                                                           : nullptr;
}

bool ChannelPictures::areBehind() const {
    return std::ranges::any_of(sources_,
                               [this](const auto& source) {
                                   const auto copy = copies_.find(source.get());
                                   return copy != copies_.end() &&
                                          copy->second.number != source->number();
                               }) ||
           std::ranges::any_of(episodes_, [](const auto& drawn) { return drawn.second.isBehind; });
}

} // namespace tarnwick::player
