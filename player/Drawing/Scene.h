// A program drawn at one size, with the state that it keeps between frames.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/FeedbackFrames.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/SoundTap.h"
#include "player/Drawing/LiveRecord.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick::player {

struct SceneMoment {
    double time = 0;                             // seconds of the episode
    std::optional<std::array<float, 2>> mouse{}; // as in LiveRecord
    std::shared_ptr<const Settings> settings;    // never null
    bool isPlaying = false;                      // a frame or step that is late may be skipped
};

// One thread at a time. Draws with a queue of its owner.
class Scene {
  public:
    // Null if the device has no room for the state; ProgramFrames::absence has the reason.
    static std::unique_ptr<Scene> make(std::shared_ptr<const ShaderProgram> program,
                                       std::shared_ptr<gpu::Device> device, const PixelSize& size);
    ~Scene();

    const std::shared_ptr<const ShaderProgram>& program() const { return program_; }
    const PixelSize& size() const { return size_; }
    // The last frame that was drawn; null before the first.
    const gpu::Texture* picture() const;

    // Computes a part of the state that a frame needs, such as the steps of particles after a seek.
    // Returns the progress, or nothing when the frame can be drawn. Blocks for a part of a second.
    std::optional<LiveNews::Warming> warm(const SceneMoment& moment, gpu::CommandQueue& queue);

    // Encodes the frame. The caller commits and waits, then calls finish(). Nothing if the device
    // fails.
    std::optional<gpu::CommandBuffer> encode(const SceneMoment& moment, gpu::CommandQueue& queue);
    // The encoded frame is drawn: it becomes picture().
    void finish();
    // Whether the next frame of the same moment would have another picture, because a simulation is
    // behind.
    bool isBehind(const SceneMoment& moment) const;

  private:
    Scene(std::shared_ptr<const ShaderProgram> program, std::shared_ptr<gpu::Device> device,
          const PixelSize& size);
    FrameMoment frameMoment(const SceneMoment& moment) const;
    ShaderInputs inputs(double time, const ParamValues& values);
    std::optional<LiveNews::Warming> warmSimulation(const SceneMoment& moment,
                                                    gpu::CommandQueue& queue);
    std::optional<LiveNews::Warming> warmFeedback(const SceneMoment& moment,
                                                  gpu::CommandQueue& queue);

    std::shared_ptr<gpu::Device> device_; // outlives the frames
    std::shared_ptr<const ShaderProgram> program_;
    PixelSize size_;
    std::shared_ptr<const Settings> settings_; // of the frame that is encoded
    std::unique_ptr<ProgramFrames> frames_;
    std::unique_ptr<FeedbackFrames> pictures_;
    std::unique_ptr<SoundTap> tap_; // null if the program has no sound or reads no Inputs
    std::int64_t frame_ = -1;       // number of the last one drawn; -1: none
    std::int64_t encoded_ = -1;     // number of the one encoded
};

} // namespace tarnwick::player
