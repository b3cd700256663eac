// Lets an episode react to the sound of a media file.
#pragma once

#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/LevelInputs.h"
#include "TarnwickRender/Sound/SoundListener.h"

#include <filesystem>
#include <memory>

namespace tarnwick {

// The file follows the time of the episode and repeats. One thread at a time. The spectrum's
// texture is written by each call of inputs(), so the GPU must have finished with the last inputs.
class SoundFileTap : public FrameInputs {
  public:
    // Opens the file. Throws InputError. Blocks.
    static std::unique_ptr<SoundFileTap> make(const std::filesystem::path& file,
                                              gpu::Device& device);

    ShaderInputs inputs(double time, const ParamValues& values) override;
    void reset() override { listener_.reset(); }

  private:
    SoundFileTap(std::unique_ptr<LoopedSound> sound, std::unique_ptr<LevelInputs> levels);

    std::unique_ptr<LoopedSound> sound_;
    std::unique_ptr<LevelInputs> levels_;
    SoundListener listener_;
};

} // namespace tarnwick
