// A file as a channel of a replay: exactly the frame of each time, read on another thread.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Channels/Channel.h"
#include "TarnwickRender/PictureTexture.h"
#include "player/Channels/FrameSource.h"

#include <cstdint>
#include <filesystem>

namespace tarnwick::player {

// A file that cannot be read is black.
class SourceChannel : public Channel {
  public:
    // Reads the file from now on. `tell`: as in FrameSource. The device outlives this.
    SourceChannel(const std::filesystem::path& file, FrameSource::Tell tell, gpu::Device& device);

    // Waits for the file, at most a twentieth of a second.
    bool prepare(double time) override;
    const gpu::Texture* at(double time) override;

  private:
    gpu::Device& device_;
    FrameSource source_;
    PictureTexture texture_;
    std::uint64_t shown_ = 0; // FrameSource::Frame::number of the texture; 0: none
};

} // namespace tarnwick::player
