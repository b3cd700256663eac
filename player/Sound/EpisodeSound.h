// The sound that an episode makes itself.
#pragma once

#include "TarnwickRender/ShaderProgram.h"
#include "player/Sound/KernelDevice.h"
#include "player/Sound/TimedSound.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace tarnwick::player {

class EpisodeSound : public TimedSound {
  public:
    // Keys do not change a sound, as in exports: `values` are the base values. `device` is of the
    // program's pictures. The GPU is used at prepare(), or else at the first samples().
    EpisodeSound(std::shared_ptr<const ShaderProgram> program, std::shared_ptr<KernelDevice> device,
                 ParamValues values);
    // The same program with other values. Shares the objects of the GPU.
    std::shared_ptr<EpisodeSound> with(ParamValues values) const;

    const ParamValues& values() const { return values_; }

    // Opens the device and compiles the kernel, so that the first samples come without delay.
    // Blocks. Any thread, before samples().
    void prepare();

    // `count` samples as SoundRun has them; absent if the device fails. One thread for all sounds
    // of the program. Valid until the next call.
    std::optional<std::span<const float>> run(double start, double rate, std::uint32_t count,
                                              const ParamValues& values);

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
