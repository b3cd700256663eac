// Lets an episode react to the sound that it makes itself.
#pragma once

#include "TarnwickCore/AudioAnalyzer.h"
#include "TarnwickRender/ShaderInputs.h"
#include "TarnwickRender/ShaderProgram.h"
#include "TarnwickRender/SpectrumTexture.h"

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
    // for one small job on a queue of its own, so never behind the frame's. The spectrum's texture
    // is this tap's, and the next call changes it. ShaderInputs::none() where the device fails,
    // and then all stays as it was.
    ShaderInputs inputs(double time, const ParamValues& values);

    // The same for a frame that is shown alone: after the frames of the two seconds before it, so
    // that the levels are those of playback.
    ShaderInputs playedInputs(double time, const ParamValues& values);
    // The times of these frames, in seconds: 60 a second, none below 0.
    static std::vector<double> timesBefore(double time);

    const AudioAnalyzer& analyzer() const { return analyzer_; }
    const SpectrumTexture& spectrum() const { return *spectrum_; }

  private:
    SoundTap();
    void listen(double time, std::span<const float> mono);

    std::shared_ptr<const ShaderProgram> program_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<gpu::Buffer> buffer_; // AudioAnalyzer::window samples
    AudioAnalyzer analyzer_;
    std::unique_ptr<SpectrumTexture> spectrum_;
    std::optional<double> lastTime_; // seconds
};

} // namespace tarnwick
