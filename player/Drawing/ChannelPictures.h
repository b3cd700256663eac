// The textures of an episode's channels: pictures of sources are copied, other episodes are drawn.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickRender/PictureTexture.h"
#include "player/Drawing/LiveChannels.h"
#include "player/Drawing/Scene.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace tarnwick::player {

// One thread at a time.
class ChannelPictures {
  public:
    // Draws a scene and waits for it. False if that fails.
    using Draw = std::function<bool(Scene&, const SceneMoment&)>;

    // Drops everything of another device. The device outlives this.
    void use(std::shared_ptr<gpu::Device> device);
    // Drops the textures and scenes that `channels` does not need. Null: no channels.
    void use(std::shared_ptr<const LiveChannels> channels);
    bool areUsed() const { return channels_ != nullptr; }

    // Brings the channels to a moment: copies the newest pictures of the sources, at most
    // `mostCopied` bytes and one picture more, and draws the episodes at `size`. `shown` is the
    // last picture of the episode that is drawn, or null.
    void bring(const SceneMoment& moment, const PixelSize& size, const gpu::Texture* shown,
               gpu::CommandQueue& queue, const Draw& draw);
    // Channels 0 to 3 of the episode that is drawn, as of bring(). Null: black.
    std::vector<const gpu::Texture*> textures() const;
    // Whether another bring() of the same moment would change them.
    bool areBehind() const;

    static constexpr std::size_t mostCopied = std::size_t{16} << 20;

  private:
    struct Copy {
        PictureTexture texture;
        std::uint64_t number = 0; // FrameSource::number of the picture; 0: none
    };
    // An episode that a channel shows, and its successor until that has a picture.
    struct Drawn {
        std::unique_ptr<Scene> scene, next;
        std::shared_ptr<const ShaderProgram> failed; // has no room on the device
        bool isBehind = false;
    };

    struct Bringing; // the arguments of bring(), and the episodes that were begun

    void copySources(double time);
    bool copy(FrameSource& source, Copy& into);
    void drawEpisode(std::uint64_t document, Bringing& bringing);
    Scene* sceneOf(Drawn& drawn, const LiveEpisode& episode, const PixelSize& size);
    std::vector<const gpu::Texture*> texturesOf(const LiveChannelSet& channels) const;
    const gpu::Texture* textureOf(const LiveChannel& channel) const;

    std::shared_ptr<gpu::Device> device_;
    std::shared_ptr<const LiveChannels> channels_;
    std::set<std::shared_ptr<FrameSource>> sources_; // of channels_
    std::map<const FrameSource*, Copy> copies_;
    std::map<std::uint64_t, Drawn> episodes_;
    const gpu::Texture* shown_ = nullptr; // of the last bring()
};

} // namespace tarnwick::player
