// The sound file that an episode hears instead of its own sound.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Performance/Performance.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace tarnwick {

struct EpisodeAudio {
    enum class Track : std::uint8_t { file, own, both };

    std::filesystem::path file{}; // empty: none
    double seconds = 0;           // its length
    Track track = Track::file;    // the sound of a movie

    bool isGiven() const { return !file.empty(); }
    bool hasOwn() const { return !isGiven() || track != Track::file; }
    bool hasFile() const { return isGiven() && track != Track::own; }
};

// From --audio and --track. Throws CommandError for a file that cannot be read or has no sound.
EpisodeAudio episodeAudioOf(const Arguments& arguments);
// Throws CommandError if the episode does not hear `sound`: "its sound".
void checkHears(const Episode& episode, std::string_view sound);
// Without the sound files that cannot be read, about which it prints on standard error.
Performance withReadableSounds(Performance performance);

// The file whose sound a movie has; empty: none, also with --no-sound.
std::filesystem::path movieFileOf(const EpisodeAudio& audio, const Arguments& arguments);

std::vector<std::string_view> trackNames();

constexpr Option audioOption(std::string_view excludes) {
    return {.name = "--audio",
            .value = "FILE",
            .help = "let an episode with Inputs hear this sound file; it follows the time of the "
                    "episode and repeats",
            .values = FileName{},
            .byDefault = "own sound of the episode",
            .excludes = excludes};
}
constexpr Option trackOption{.name = "--track",
                             .value = "WHICH",
                             .help =
                                 "sound of the movie: the file of --audio, the episode's own, or "
                                 "both",
                             .values = OneOf{trackNames},
                             .byDefault = "file",
                             .needs = "--audio"};

} // namespace tarnwick
