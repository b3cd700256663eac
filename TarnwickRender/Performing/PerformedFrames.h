// The frames of an episode as it was performed: on a screen, in a movie and as a still the same.
// Settings are played from time 0.
//
// Particles and frames that are read as the previous one go on in frames of 1/60 s of the episode's
// clock (FrameWalk), however often a frame is shown. An episode that reads its previous frame shows
// the nearest of these frames; others show the exact time.
#pragma once

#include "TarnwickCore/Performance/FrameWalk.h"
#include "TarnwickCore/Performance/Timeline.h"
#include "TarnwickRender/FeedbackFrames.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/LevelInputs.h"
#include "TarnwickRender/ProgramFrames.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

namespace tarnwick {

// One thread at a time. The device outlives it.
class PerformedFrames {
  public:
    // Null if the device has no room; ProgramFrames::absence has the reason. `timeline` is fitted
    // to the program's parameters. `inputs` null: the program's own sound, and black. It is told
    // the files of a performance; levels that the performance has are shown instead of its own.
    static std::unique_ptr<PerformedFrames> make(std::shared_ptr<const ShaderProgram> program,
                                                 gpu::Device& device, std::int64_t width,
                                                 std::int64_t height, const Timeline& timeline,
                                                 std::shared_ptr<FrameInputs> inputs = nullptr);
    PerformedFrames(const PerformedFrames&) = delete;
    PerformedFrames& operator=(const PerformedFrames&) = delete;

    struct Progress {
        std::int64_t done = 0, total = 0; // frames of 1/60 s; equal: the inputs are not ready
    };
    // Computes a part of what the frame at `seconds` of the performance depends on. Returns the
    // progress, or nothing when the frame can be drawn. Fast forwards. Blocks for 60 frames of
    // 1/60 s, and for the inputs of one as FrameInputs::prepareChannels() does, at most.
    std::optional<Progress> prepare(double seconds, gpu::CommandQueue& queue);

    // Encodes the frame of the last prepare(), which returned nothing. Neither commits nor waits
    // for it. False if the device fails.
    bool encode(gpu::CommandBuffer& commands, const FramePass& pass);

    double time() const; // seconds of the episode, of that frame
    // Whether a loop of the episode was ended in prepare().
    bool hitLoopBudget() const { return hitLoopBudget_ || frames_->hitLoopBudget(); }

  private:
    PerformedFrames(std::shared_ptr<const ShaderProgram> program,
                    std::shared_ptr<const Performance> performance);
    void start();
    std::int64_t go(const FramePassage& passage, std::int64_t limit, gpu::CommandQueue& queue);
    void leave(const FrameControls& controls, gpu::CommandQueue& queue);
    void reach(std::int64_t frame, const FrameControls& controls, gpu::CommandQueue& queue);
    void use(const FrameControls& controls);
    const FrameControls& controlsToLeave(const FramePassage& passage) const;
    bool areReady(const FramePassage& passage);
    bool isHeard(std::int64_t frame, const FramePassage& passage) const;
    void hear(std::int64_t frame, const FramePassage& passage);
    bool encode(gpu::CommandBuffer& commands, double time, const FrameControls& controls,
                const FramePass& pass);
    ShaderInputs seen(double time, const FrameControls& controls);
    FrameMoment::Mouse mouse(const FrameControls& controls) const;

    std::shared_ptr<const ShaderProgram> program_;
    FrameWalk walk_;
    std::unique_ptr<ProgramFrames> frames_;
    std::unique_ptr<FeedbackFrames> feedback_;    // of a program that reads its previous frame
    std::shared_ptr<FrameInputs> heard_;          // of a program that takes Inputs; null: none
    std::shared_ptr<const PerformedInputs> used_; // of heard_
    std::unique_ptr<LevelInputs> levels_;         // of a program that takes Inputs
    std::shared_ptr<const Settings> settings_;    // of the steps that are encoded
    ShaderInputs inputs_;                         // of the frame frame_, without channels
    std::deque<FramePassage> ahead_;              // not yet computed
    std::int64_t frame_ = -1;                     // the steps are done up to it; -1: none
    double seconds_ = -1;                         // of the last prepare()
    bool hasFailed_ = false, hitLoopBudget_ = false;
};

} // namespace tarnwick
