// The media of a shared episode: a movie that loops, and a still.
#pragma once

#include "TarnwickRender/ShaderProgram.h"
#include "programs/Episode/EpisodePicture.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

struct SharedEpisode {
    Episode episode;
    std::shared_ptr<const ShaderProgram> program;
    PixelSize size; // of the movie and of the still
    Settings settings{};
    ChannelSources channels{};
    std::filesystem::path audio{}; // a sound file that it hears; empty: its own sound
};

// An MP4 movie without sound, around the time of the episode's still. Its length is the one from 6
// to 10 seconds that loops best, or 8 seconds for an episode with a simulation or grid; its end is
// crossfaded into the frames before its start. Prints progress on standard error; Ctrl-C cancels.
// Throws CommandError.
std::string sharedLoop(const SharedEpisode& episode, gpu::Device& device);

// The still as a JPEG file, of the best quality that fits into a megabyte. Throws CommandError.
std::string sharedThumb(const SharedEpisode& episode, gpu::Device& device);

// The bytes of an existing file; of one over 25 MB, the maximum of an upload, the first 25 MB and
// one byte. Throws CommandError.
std::string mediaFile(std::string_view path);

} // namespace tarnwick
