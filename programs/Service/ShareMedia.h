// What a shared episode is shown by: a movie that loops, and a still.
#pragma once

#include "TarnwickRender/ShaderProgram.h"
#include "programs/Episode/EpisodePicture.h"

#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

struct SharedEpisode {
    Episode episode;
    std::shared_ptr<const ShaderProgram> program;
    PixelSize size; // of the movie and of the still
    Settings settings{};
};

// An MP4 movie without sound: around the time of the episode's still, of the length from 6 to 10
// seconds that loops best, or of 8 for an episode that has no such; its end is crossfaded into what
// lies before its beginning. How far it is stands on standard error; Ctrl-C cancels. Throws
// CommandError.
std::string sharedLoop(const SharedEpisode& episode, gpu::Device& device);

// The still as a JPEG file, of as good a quality as fits into a megabyte. Throws CommandError.
std::string sharedThumb(const SharedEpisode& episode, gpu::Device& device);

// The bytes of a file that was made before; of one over 25 MB, which no upload may be, the first 25
// MB and one byte. Throws CommandError.
std::string mediaFile(std::string_view path);

} // namespace tarnwick
