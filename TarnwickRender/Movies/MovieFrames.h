// Draws the frames of a movie, one after another: its segments' pictures, their crossfades and the
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
    // Makes the queue and the pipelines that the movie takes. Throws ExportError.
    MovieFrames(const ExportTimeline& timeline, gpu::Device& device, const PixelSize& size);

    // Makes the textures that the crossfades take. Throws ExportError.
    void makeLoopTextures();

    // Draws frame `index` of the movie into `target` and waits for the GPU. The frames are asked
    // for in their order; the first may be any. Calls `meanwhile` during what comes before a
    // segment's first frame: it may throw. `encodeMore` adds to the same command buffer, behind the
    // drawing, and says whether it could. Throws ExportError.
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
    // What a crossfade mixes: a frame, and those before the beginning. Of a program that keeps
    // state these are drawn and kept before its first frame; of others the first is drawn as
    // needed.
    std::unique_ptr<gpu::Texture> own_;
    std::vector<std::unique_ptr<gpu::Texture>> leadIn_;
    std::unique_ptr<gpu::Texture> scratch_;
    const ExportTimeline::Entry* entry_ = nullptr; // the one that pictures_ is of
    std::optional<SegmentPictures> pictures_;
    bool hitLoopBudget_ = false;
};

} // namespace tarnwick
