// What the subcommands that hear an episode share.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickRender/SoundCheck.h"
#include "programs/CommandLine/Arguments.h"

#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

// A stretch of an episode's sound, as a command line asks for it.
struct EpisodeSound {
    Episode episode;
    ParamValues values;  // base values: keys do not move a sound
    double start = 0;    // seconds, from 0 on
    double duration = 0; // seconds, at least one sample
};

// From the operand, `startOption`, --duration and what says its settings. Throws CommandError; also
// when the episode has no sound.
EpisodeSound episodeSoundOf(const Arguments& arguments, std::string_view startOption);

// Ends the command because `sound` is NaN or infinite at `time` seconds.
[[noreturn]] void refuseNotFinite(const EpisodeSound& sound, double time);

// Ends the command where `sound` is NaN or infinite anywhere, which a movie's writer would hide.
void checkHeard(const EpisodeSound& sound, gpu::Device& device);
void checkHeard(const EpisodeSound& sound, SoundCheck& check);

// What finds such times. Throws CommandError where the device cannot make it.
std::unique_ptr<SoundCheck> soundCheckOf(const EpisodeSound& sound, gpu::Device& device);

// Throws CommandError where the episode defines no sound.
void checkSound(const Episode& episode);

} // namespace tarnwick
