// Two textures in turn: the frame that is drawn, and the frame before it, which the shader reads.
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
    // Null for a size below 1 by 1 and if the device has no room.
    static std::unique_ptr<FeedbackFrames> make(gpu::Device& device, std::int64_t width,
                                                std::int64_t height, gpu::PixelFormat format);

    std::int64_t width() const { return current().width(); } // pixels
    std::int64_t height() const { return current().height(); }
    std::int64_t index() const { return static_cast<std::int64_t>(index_); } // of current(): 0, 1
    bool hasPrevious() const { return hasPrevious_; }

    const gpu::Texture& current() const { return *textures_[index_]; } // the target of the frame
    // The last finished frame; null before the first.
    const gpu::Texture* previous() const {
        return hasPrevious_ ? textures_[1 - index_].get() : nullptr;
    }

    // Makes current() previous(). Call it after a frame was drawn.
    void advance();
    // Undoes advance(): the next frame replaces previous(). `hasPrevious` says whether there was
    // a frame before that one.
    void goBack(bool hasPrevious);
    // Forgets the previous frame.
    void reset() { hasPrevious_ = false; }

    // Copy the area that both sizes have in common, from the upper left. `target` has the same
    // format.
    void copy(const gpu::Texture& target, gpu::CommandBuffer& commands) const;
    void copyPrevious(const gpu::Texture& target, gpu::CommandBuffer& commands) const;

  private:
    std::array<std::unique_ptr<gpu::Texture>, 2> textures_;
    std::size_t index_ = 0;
    bool hasPrevious_ = false;
};

} // namespace tarnwick
