// Draws the frames of one segment of a movie.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/ExportSegment.h"
#include "TarnwickRender/Pictures/OverlayQuad.h"
#include "TarnwickRender/Pictures/Watermark.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/Run/FeedbackFrames.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarnwick {

// One thread at a time. What it borrows outlives it.
class SegmentPictures {
  public:
    struct Stage {
        gpu::Device& device;
        gpu::CommandQueue& queue;
        const OverlayQuad* overlay = nullptr; // for a segment with a layout
        PixelSize frame{};
        std::int64_t fps = 1;
    };

    // Throws ExportError where the device cannot make what the program needs.
    SegmentPictures(const ExportSegment& segment, const Stage& stage);

    // Brings a simulation to where encode(frame) goes on from; from the start where it is beyond.
    // Waits for the GPU and calls `afterEach` every 240 steps. Whether it got there.
    bool warm(std::int64_t frame, const std::function<void()>& afterEach);

    // Encodes frame `frame` of the segment, one before its beginning if below 0, into `target`,
    // which is the whole frame, with the watermark over it unless null. What keeps state is asked
    // for frames in their order. Whether it could.
    bool encode(gpu::CommandBuffer& commands, const gpu::Texture& target, std::int64_t frame,
                const Watermark* watermark = nullptr);

    // Whether a loop was ended while simulating.
    bool hitLoopBudget() const { return frames_->hitLoopBudget(); }

  private:
    double time(std::int64_t frame) const; // seconds
    FrameMoment moment(double time) const;
    bool encodeDirectly(gpu::CommandBuffer& commands, const gpu::Texture& target,
                        const ProgramFrame& frame, const gpu::Texture* overlay,
                        const Watermark* watermark) const;
    bool encodeThroughFeedback(gpu::CommandBuffer& commands, const gpu::Texture& target,
                               const ProgramFrame& frame, const gpu::Texture* overlay,
                               const Watermark* watermark);
    const gpu::Texture* overlayAt(double time) const; // null for none
    void drawOver(gpu::RenderCommandEncoder& encoder, const gpu::Texture* overlay,
                  const Watermark* watermark) const;

    const ExportSegment& segment_;
    Stage stage_;
    FrameLayout::Area area_; // of the program's picture
    gpu::ClearColor background_;
    std::unique_ptr<ProgramFrames> frames_;
    std::unique_ptr<FeedbackFrames> feedback_; // of a program that may look at its last frame
};

} // namespace tarnwick
