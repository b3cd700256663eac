// The sound that an episode makes itself.
#pragma once

#include "TarnwickRender/ShaderProgram.h"
#include "player/Sound/TimedSound.h"

#include <memory>

namespace tarnwick::player {

class EpisodeSound : public TimedSound {
  public:
    // Keys do not change a sound, as in exports: `values` are the base values. The GPU is used at
    // the first samples() only.
    EpisodeSound(std::shared_ptr<const ShaderProgram> program, std::shared_ptr<gpu::Device> device,
                 ParamValues values);
    // The same program with other values. Shares the objects of the GPU.
    std::shared_ptr<EpisodeSound> with(ParamValues values) const;

    const ParamValues& values() const { return values_; }

    // At soundRate and at a time that is a whole number of frames, each frame is the same however
    // the calls cut the sound: that of AudioRenderer from the last sixteenth of a second on. Silent
    // if the device fails.
    bool samples(double start, double rate, std::span<float> stereo) override;

  private:
    struct Shared;

    EpisodeSound(std::shared_ptr<Shared> shared, ParamValues values);

    std::shared_ptr<Shared> shared_; // with those of other values
    ParamValues values_;
};

} // namespace tarnwick::player
