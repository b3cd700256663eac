// Draws the frames of one segment of a movie.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickRender/ExportSegment.h"
#include "TarnwickRender/FeedbackFrames.h"
#include "TarnwickRender/OverlayQuad.h"
#include "TarnwickRender/Performing/PerformedFrames.h"
#include "TarnwickRender/Pictures/Watermark.h"
#include "TarnwickRender/ProgramFrames.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarnwick {

// One thread at a time. The segment and the objects of the stage outlive it.
class SegmentPictures {
  public:
    struct Stage {
        gpu::Device& device;
        gpu::CommandQueue& queue;
        const OverlayQuad* overlay = nullptr; // for a segment with a layout
        PixelSize frame{};
        std::int64_t fps = 1;
    };

    // Throws ExportError if the device has no room.
    SegmentPictures(const ExportSegment& segment, const Stage& stage);

    // Advances a simulation to the step before that of `frame`. One at that step or later starts
    // again. Waits for the GPU and calls `afterEach` every 240 steps. False if the device fails.
    bool warm(std::int64_t frame, const std::function<void()>& afterEach);

    // Computes what `frame` of a performance depends on; frames of other segments need nothing.
    // Waits for the GPU and calls `afterEach` after each part.
    void prepare(std::int64_t frame, const std::function<void()>& afterEach);

    // Encodes frame `frame` of the segment (below 0: before its beginning) into `target`, the whole
    // frame, and the watermark over it unless null. A program that keeps state needs its frames in
    // order, a performance the frame of prepare(). False if there is no encoder.
    bool encode(gpu::CommandBuffer& commands, const gpu::Texture& target, std::int64_t frame,
                const Watermark* watermark = nullptr);

    // Whether a loop was ended while simulating.
    bool hitLoopBudget() const {
        return performed_ ? performed_->hitLoopBudget() : frames_->hitLoopBudget();
    }

  private:
    double time(std::int64_t frame) const; // seconds
    FrameMoment moment(double time) const;
    ShaderInputs inputsAt(double time) const;
    FramePass passOver(const gpu::Texture& target, const gpu::Texture* overlay,
                       const Watermark* watermark) const;
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
    std::unique_ptr<PerformedFrames> performed_; // of a performance; the others are null then
    std::unique_ptr<ProgramFrames> frames_;
    std::unique_ptr<FeedbackFrames> feedback_; // of a program that takes Inputs
};

} // namespace tarnwick
