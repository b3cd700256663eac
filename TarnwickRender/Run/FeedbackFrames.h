// Two pictures by turns: the frame that is being drawn, and the one before it for its shader to
// read.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace tarnwick {

class FeedbackFrames {
  public:
    // Null for a size below 1 by 1 and where the device cannot make the two textures.
    static std::unique_ptr<FeedbackFrames> make(gpu::Device& device, std::int64_t width,
                                                std::int64_t height, gpu::PixelFormat format);

    std::int64_t width() const { return current().width(); } // pixels
    std::int64_t height() const { return current().height(); }
    std::int64_t index() const { return static_cast<std::int64_t>(index_); } // of current(): 0, 1
    bool hasPrevious() const { return hasPrevious_; }

    const gpu::Texture& current() const { return *textures_[index_]; } // to be drawn into
    // The last finished frame; null before the first.
    const gpu::Texture* previous() const {
        return hasPrevious_ ? textures_[1 - index_].get() : nullptr;
    }

    // After a frame was drawn into current(): makes it previous().
    void advance();
    // Forgets the previous frame.
    void reset() { hasPrevious_ = false; }

    // Copy what both sizes have in common, from the upper left. `target` has the frames' format.
    void copy(const gpu::Texture& target, gpu::CommandBuffer& commands) const;
    void copyPrevious(const gpu::Texture& target, gpu::CommandBuffer& commands) const;

  private:
    std::array<std::unique_ptr<gpu::Texture>, 2> textures_;
    std::size_t index_ = 0;
    bool hasPrevious_ = false;
};

} // namespace tarnwick
