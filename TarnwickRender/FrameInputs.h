// The sound and the pictures that an episode with `Inputs` reads, over its time.
#pragma once

#include "TarnwickCore/Params.h"
#include "TarnwickCore/Performance/Performance.h"
#include "TarnwickRender/ShaderInputs.h"

#include <stdexcept>
#include <vector>

namespace tarnwick {

// A file that an episode reads cannot be read, or a channel's episode cannot be drawn. what() is
// one sentence.
struct InputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One thread at a time. Textures are borrowed from this; those of one frame are valid until the
// next calls. Functions may block for GPU jobs of their own and for files, and throw InputError.
class FrameInputs {
  public:
    virtual ~FrameInputs() = default;

    // The levels and the spectrum of the sound up to `time` seconds, and nothing else. They
    // continue from the last call; after a step back in time they start from silence. `values` are
    // the base values, for the episode's own sound.
    virtual ShaderInputs inputs(double time, const ParamValues& values) = 0;
    // The next call of inputs() starts from silence.
    virtual void reset() = 0;
    // The files that a performance names from now on. Inputs that are always the same ignore them.
    virtual void use(const PerformedInputs&) {}
    // Channels 0 to 3 at `time` seconds, as ShaderInputs has them.
    virtual std::vector<const gpu::Texture*> channels(double time);

    // Each does a part of what inputs() and channels() of `time` wait for, and blocks for a part of
    // a second. True once the other function finds the sound, or the pictures, of exactly that
    // time; inputs that wait in those functions are always ready.
    virtual bool prepareSound(double) { return true; }
    virtual bool prepareChannels(double) { return true; }

    // inputs() of a single frame: plays the two seconds before it first, so that the levels equal
    // those of playback.
    ShaderInputs playedInputs(double time, const ParamValues& values);
    // The times of the frames in these two seconds: 60 a second, none below 0.
    static std::vector<double> timesBefore(double time);
};

} // namespace tarnwick
