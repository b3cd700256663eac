// Draws the frames of a movie, one after another: the segments' pictures, the crossfades and the
// watermark.
#pragma once

#include "TarnwickRender/Movies/ExportTimeline.h"
#include "TarnwickRender/Movies/SegmentPictures.h"
#include "TarnwickRender/Pictures/LoopBlend.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// One thread at a time. The device and the timeline outlive it.
class MovieFrames {
  public:
    // Makes the queue and the pipelines. Throws ExportError.
    MovieFrames(const ExportTimeline& timeline, gpu::Device& device, const PixelSize& size);

    // Makes the textures of the crossfades. Throws ExportError.
    void makeLoopTextures();

    // Draws frame `index` of the movie into `target` and waits for the GPU. The first call may be
    // for any frame, each further call is for the next one. Calls `meanwhile`, which may throw,
    // while frames or steps before it are drawn. `encodeMore` adds to the same command buffer after
    // the drawing; false if it cannot. Throws ExportError.
    void draw(std::int64_t index, const gpu::Texture& target,
              const std::function<void()>& meanwhile,
              const std::function<bool(gpu::CommandBuffer&)>& encodeMore);

    // Whether a loop of an episode was ended.
    bool hitLoopBudget() const {
        return hitLoopBudget_ || (pictures_ && pictures_->hitLoopBudget());
    }

  private:
    void begin(const ExportTimeline::Entry& entry, std::int64_t frame,
               const std::function<void()>& meanwhile);
    const gpu::Texture& scratch();
    bool encodeMix(gpu::CommandBuffer& commands, const gpu::Texture& target, std::int64_t frame);
    template <typename Encode> void perform(std::int64_t frame, const Encode& encode);

    const ExportTimeline& timeline_;
    gpu::Device& device_;
    PixelSize size_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<OverlayQuad> overlay_;
    std::unique_ptr<Watermark> watermark_;
    std::unique_ptr<LoopBlend> blend_;
    // The pictures that a crossfade mixes: the frame itself, and the frames before the beginning.
    // A program that keeps state draws all of the latter before its first frame; other programs
    // draw each when needed, into the first texture.
    std::unique_ptr<gpu::Texture> own_;
    std::vector<std::unique_ptr<gpu::Texture>> leadIn_;
    std::unique_ptr<gpu::Texture> scratch_;
    const ExportTimeline::Entry* entry_ = nullptr; // the entry of pictures_
    std::optional<SegmentPictures> pictures_;
    bool hitLoopBudget_ = false;
};

} // namespace tarnwick
