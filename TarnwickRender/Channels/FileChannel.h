// A picture file or a movie file as a channel: exactly the frame of each time.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickPlatform/Media/LoopedMedia.h"
#include "TarnwickRender/Channels/Channel.h"
#include "TarnwickRender/PictureTexture.h"

#include <filesystem>
#include <memory>

namespace tarnwick {

class FileChannel : public Channel {
  public:
    // Opens the file. Throws InputError. Blocks. The device outlives this.
    FileChannel(const std::filesystem::path& file, gpu::Device& device);

    const gpu::Texture* at(double time) override;

  private:
    bool read(double time);

    std::filesystem::path file_;
    gpu::Device& device_;
    std::unique_ptr<LoopedMedia> media_;
    Picture picture_;
    PictureTexture texture_;
};

} // namespace tarnwick
