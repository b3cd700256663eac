// A program drawn at one size, with the state that it keeps between frames.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/FeedbackFrames.h"
#include "TarnwickRender/LevelInputs.h"
#include "TarnwickRender/Performing/PerformedFrames.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/SoundTap.h"
#include "player/Drawing/LiveRecord.h"
#include "player/Drawing/WarmingPace.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

struct SceneMoment {
    double time = 0;                             // seconds of the episode, or of the replay
    std::optional<std::array<float, 2>> mouse{}; // as in LiveRecord
    std::shared_ptr<const Settings> settings;    // never null
    std::vector<const gpu::Texture*> channels{}; // borrowed, as in ShaderInputs; not in a replay
    bool isPlaying = false;                      // a frame or step that is late may be skipped
    std::uint64_t clock = 0;                     // another one after each change of the transport
    std::shared_ptr<const SoundLevels> levels{}; // of the sound that is heard; null: unknown
    bool hearsOwnSound = true;                   // as in LiveRecord
    std::uint64_t restart = 0;                   // as in LiveRecord
    std::shared_ptr<const Performance> replay{}; // as in LiveRecord
    std::shared_ptr<const ReplayedInputs> replayedInputs{};
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

    // Starts with the state of another scene, as of its last frame, if warm() was not called yet:
    // edits and other sizes go on with the particles and the previous frame that are there. The
    // other scene must live until finish() and must not be drawn any more. False if their particles
    // differ.
    bool follow(const Scene& other, gpu::CommandQueue& queue);
    // Whether the state follows from that of another scene, and not from the episode's start.
    bool isFollower() const { return isFollower_; }
    // SceneMoment::clock of the last frame; 0 before the first.
    std::uint64_t clock() const { return clock_; }

    // Computes a part of the state that a frame needs, such as the steps of particles after a seek.
    // Returns the progress, or nothing when the frame can be drawn. Blocks for a part of a second.
    std::optional<LiveNews::Warming> warm(const SceneMoment& moment, gpu::CommandQueue& queue);
    // One sentence after a warm() or an encode() of a replay that cannot be drawn; otherwise empty.
    const std::string& failure() const { return failure_; }
    // Whether warm() would return nothing at once.
    bool isWarm(const SceneMoment& moment) const;
    // Seconds that a step or a frame took in the last warm() that computed some; 0 before it.
    double warmingSeconds() const { return pace_.seconds(); }

    // Encodes the frame. The caller commits and waits, then calls finish(). Nothing if the device
    // fails.
    std::optional<gpu::CommandBuffer> encode(const SceneMoment& moment, gpu::CommandQueue& queue);
    // The encoded frame is drawn: it becomes picture().
    void finish();
    // Whether the next frame of the same moment would have another picture, because a simulation is
    // behind.
    bool isBehind(const SceneMoment& moment) const;
    // Seconds of the episode, of a moment for which warm() returned nothing.
    double episodeTime(const SceneMoment& moment) const;

  private:
    Scene(std::shared_ptr<const ShaderProgram> program, std::shared_ptr<gpu::Device> device,
          const PixelSize& size);
    void takeOver(const SceneMoment& moment);
    void beginReplay(const ReplayedInputs& inputs);
    std::optional<LiveNews::Warming> warmReplay(const SceneMoment& moment,
                                                gpu::CommandQueue& queue);
    bool encodeReplay(gpu::CommandBuffer& commands, const FramePass& pass);
    FrameMoment frameMoment(const SceneMoment& moment) const;
    ShaderInputs inputs(const SceneMoment& moment);
    ShaderInputs soundInputs(const SceneMoment& moment);
    bool hasState() const;         // between frames
    std::int64_t lastStep() const; // or frame; -1: none
    bool needsWarming(const SceneMoment& moment) const;
    void aim(const SceneMoment& moment);
    bool encodeLive(const SceneMoment& moment, gpu::CommandBuffer& commands, const FramePass& pass);
    std::optional<LiveNews::Warming> warmSimulation(const SceneMoment& moment,
                                                    gpu::CommandQueue& queue);
    std::optional<LiveNews::Warming> warmFeedback(const SceneMoment& moment,
                                                  gpu::CommandQueue& queue);
    const gpu::Texture* previous() const;

    std::shared_ptr<gpu::Device> device_; // outlives the frames
    std::shared_ptr<const ShaderProgram> program_;
    PixelSize size_;
    std::shared_ptr<const Settings> settings_; // of the frame that is encoded
    std::unique_ptr<ProgramFrames> frames_;
    std::unique_ptr<FeedbackFrames> pictures_;
    std::unique_ptr<SoundTap> tap_;       // null if the program has no sound or reads no Inputs
    std::unique_ptr<LevelInputs> levels_; // null if the program reads no Inputs
    double heard_ = -1;                   // time of the last frame that the tap heard
    std::int64_t frame_ = -1;             // number of the last one drawn; -1: none
    std::int64_t encoded_ = -1;           // number of the one encoded
    std::uint64_t clock_ = 0;             // of the last frame
    std::uint64_t encodedClock_ = 0;
    bool isFollower_ = false;
    struct Followed { // frames of another scene
        const gpu::Texture* last;
        const gpu::Texture* before; // the frame before the last one; null without one
    };
    std::optional<Followed> followed_; // until the first frame is drawn
    struct Goal {
        std::int64_t frame; // the state is computed up to this frame
        std::uint64_t clock;
        Settings settings;
    };
    std::optional<Goal> goal_; // while the state is computed
    WarmingPace pace_;
    std::shared_ptr<const Performance> replay_; // of replayed_; null without one
    std::unique_ptr<PerformedFrames> replayed_;
    std::string failure_;
    std::uint64_t restart_ = 0; // of the last moment
};

} // namespace tarnwick::player
