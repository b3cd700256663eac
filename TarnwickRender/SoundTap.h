// Lets an episode react to the sound that it makes itself.
#pragma once

#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/Sound/SoundListener.h"
#include "TarnwickRender/Sound/SpectrumTexture.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

namespace tarnwick {

// Keep one for each program while it plays. One thread at a time.
class SoundTap : public FrameInputs {
  public:
    // Seconds of sound before a frame's time that the frame hears.
    static constexpr double heard = SoundListener::heard;

    // Null if the program has no sound or the device has no room.
    static std::unique_ptr<SoundTap> make(std::shared_ptr<const ShaderProgram> program,
                                          gpu::Device& device);

    // The inputs of a frame at `time` seconds: the levels and the spectrum of the 2048 samples that
    // end there, silence before time 0. The levels continue from the last call; after a step back
    // in time they start from silence. Blocks for one small GPU job. On a device without a second
    // queue that job waits for all work committed before it, so a player calls prepare(). The tap
    // owns the spectrum's texture and reuses it after mostFramesInFlight more calls. If the device
    // fails: ShaderInputs::none(), and the tap is unchanged.
    ShaderInputs inputs(double time, const ParamValues& values) override;

    void reset() override { listener_.reset(); }

    // Commits the GPU job of inputs(time, values) without waiting. Call it before the previous
    // frame is committed: then inputs() does not wait for that frame. A job that is not used is
    // dropped.
    void prepare(double time, const ParamValues& values);

    static constexpr std::size_t mostFramesInFlight = 3;

    const AudioAnalyzer& analyzer() const { return listener_.analyzer(); }
    const SpectrumTexture& spectrum() const { return *spectra_[spectrum_]; } // the newest

  private:
    struct Job {
        double time; // seconds, of the frame
        ParamValues values;
        gpu::CommandBuffer commands;
    };

    SoundTap() = default;
    bool finish(double time, const ParamValues& values);

    std::shared_ptr<const ShaderProgram> program_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> buffer_; // AudioAnalyzer::window samples
    SoundListener listener_;
    // Used in turn: frames in flight still read theirs.
    std::array<std::unique_ptr<SpectrumTexture>, mostFramesInFlight + 1> spectra_;
    std::size_t spectrum_ = 0; // the newest of them
    std::optional<Job> job_;
};

} // namespace tarnwick
