// Lets an episode react to the sound of a media file.
#pragma once

#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/LevelInputs.h"
#include "TarnwickRender/Sound/SoundListener.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace tarnwick {

// The file follows the time of the episode and repeats. One thread at a time. The spectrum's
// texture is written by each call of inputs(), so the GPU must have finished with the last inputs.
class SoundFileTap : public FrameInputs {
  public:
    // Opens the file. Throws InputError. Blocks.
    static std::unique_ptr<SoundFileTap> make(const std::filesystem::path& file,
                                              gpu::Device& device);

    // Writes interleaved stereo from `start` seconds on, `rate` samples per second. False if it is
    // not decoded yet: prepareSound() asks again, and inputs() keeps the levels.
    using Samples = std::function<bool(double start, double rate, std::span<float> stereo)>;
    // Hears a file that is decoded elsewhere. Throws InputError.
    static std::unique_ptr<SoundFileTap> make(Samples samples, gpu::Device& device);

    ShaderInputs inputs(double time, const ParamValues& values) override;
    void reset() override { listener_.reset(); }
    bool prepareSound(double time) override;

  private:
    SoundFileTap(Samples samples, std::unique_ptr<LevelInputs> levels);

    Samples samples_;
    std::array<float, std::size_t{2} * AudioAnalyzer::window> stereo_{}; // what read_ hears
    std::optional<double> read_;                                         // seconds; absent: none
    std::unique_ptr<LevelInputs> levels_;
    SoundListener listener_;
};

} // namespace tarnwick
