// A texture that shows pictures of any size, one after another.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickPlatform/Pictures/Picture.h"

#include <array>
#include <cstddef>
#include <memory>

namespace tarnwick {

// Two textures in turn: a frame that is still drawn reads the other one. One thread at a time.
class PictureTexture {
  public:
    // False, with the texture unchanged, if the device has no room or no textures of that size.
    bool show(const Picture& picture, gpu::Device& device);
    // Of the last picture; null before the first.
    const gpu::Texture* texture() const { return textures_[index_].get(); }

  private:
    std::array<std::unique_ptr<gpu::Texture>, 2> textures_;
    std::size_t index_ = 0;
};

} // namespace tarnwick
