// The picture of an episode as a channel.
#pragma once

#include "TarnwickRender/Channels/Channel.h"
#include "TarnwickRender/Performing/PerformedFrames.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

// Settings play from the start of the episode; its time is that of the episode that reads the
// channel.
class EpisodeChannel : public Channel {
  public:
    // `timeline` is fitted to the program's parameters; `inputs`: as in PerformedFrames. Throws
    // InputError if the device has no room. The device outlives this.
    EpisodeChannel(const std::shared_ptr<const ShaderProgram>& program, const Timeline& timeline,
                   std::shared_ptr<FrameInputs> inputs, gpu::Device& device, std::int64_t width,
                   std::int64_t height);

    bool prepare(double time) override;
    const gpu::Texture* at(double time) override;

  private:
    void draw(double time);

    std::string device_; // its name
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<PerformedFrames> frames_;
    std::unique_ptr<gpu::Texture> target_;
    std::optional<double> time_; // of the picture
};

} // namespace tarnwick
