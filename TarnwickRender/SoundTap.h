// Lets an episode react to the sound that it makes itself.
#pragma once

#include "TarnwickCore/Live/AudioAnalyzer.h"
#include "TarnwickRender/ShaderInputs.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/Sound/SpectrumTexture.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick {

// One for a program, kept while it plays. One thread at a time.
class SoundTap {
  public:
    // Seconds before a frame's time that it hears.
    static constexpr double heard =
        AudioAnalyzer::window / static_cast<double>(ShaderAssembler::sampleRate);

    // Null where the program has no sound or the device cannot make what it takes.
    static std::unique_ptr<SoundTap> make(std::shared_ptr<const ShaderProgram> program,
                                          gpu::Device& device);

    // What a frame at `time` seconds hears: the 2048 samples that end there, with silence before
    // time 0. The levels go on from the call before; time that goes back begins in silence. Blocks
    // for one small job, beside the frames in flight where the device has a queue for that. Where
    // it has not the job waits for all that was committed before it, so a player prepares it. The
    // spectrum's texture is this tap's; the call after the next mostFramesInFlight changes it.
    // ShaderInputs::none() where the device fails, and then all stays as it was.
    ShaderInputs inputs(double time, const ParamValues& values);

    // The same for a frame that is shown alone: after the frames of the two seconds before it, so
    // that the levels are those of playback.
    ShaderInputs playedInputs(double time, const ParamValues& values);
    // The times of these frames, in seconds: 60 a second, none below 0.
    static std::vector<double> timesBefore(double time);

    // Commits the job that inputs() at the same time with the same values takes, and does not wait
    // for it. Called before the frame before that is committed, it keeps inputs() from waiting for
    // that frame. A job that nobody took is dropped.
    void prepare(double time, const ParamValues& values);

    static constexpr std::size_t mostFramesInFlight = 3;

    const AudioAnalyzer& analyzer() const { return analyzer_; }
    const SpectrumTexture& spectrum() const { return *spectra_[spectrum_]; } // the newest

  private:
    struct Job {
        double time; // seconds, of the frame
        ParamValues values;
        gpu::CommandBuffer commands;
    };

    SoundTap();
    bool finish(double time, const ParamValues& values);
    void listen(double time, std::span<const float> mono);

    std::shared_ptr<const ShaderProgram> program_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> buffer_; // AudioAnalyzer::window samples
    AudioAnalyzer analyzer_;
    // By turns, since frames in flight still read theirs.
    std::array<std::unique_ptr<SpectrumTexture>, mostFramesInFlight + 1> spectra_;
    std::size_t spectrum_ = 0; // the newest of them
    std::optional<Job> job_;
    std::optional<double> lastTime_; // seconds
};

} // namespace tarnwick
