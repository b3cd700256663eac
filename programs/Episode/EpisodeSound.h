// The sound of an episode, for commands.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickRender/AudioRenderer.h"
#include "TarnwickRender/SoundCheck.h"

#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

// A part of an episode's sound.
struct EpisodeSound {
    Episode episode;
    ParamValues values;  // base values; keys do not change a sound
    double start = 0;    // seconds, at least 0
    double duration = 0; // seconds, at least one sample
};

// From the operand, `startOption`, --duration and the options of settings. Throws CommandError,
// also if the episode has no sound.
EpisodeSound episodeSoundOf(const Arguments& arguments, std::string_view startOption);

// Ends the command with the error that `sound` is NaN or infinite at `time` (seconds).
[[noreturn]] void refuseNotFinite(const EpisodeSound& sound, double time);

// Ends the command if `sound` is NaN or infinite anywhere, because a movie's writer hides it.
void checkHeard(const EpisodeSound& sound, gpu::Device& device);
void checkHeard(const EpisodeSound& sound, SoundCheck& check);

// Finds such times. Throws CommandError if the device cannot make it.
std::unique_ptr<SoundCheck> soundCheckOf(const EpisodeSound& sound, gpu::Device& device);

// Throws CommandError if the episode defines no sound.
void checkSound(const Episode& episode);

constexpr Option soundDurationOption{
    .name = "--duration",
    .value = "SECONDS",
    .help = "length of the sound",
    .values = Number{.most = AudioRenderer::longestWav, .unit = "seconds", .excludesLeast = true},
    .byDefault = "10"};

} // namespace tarnwick
