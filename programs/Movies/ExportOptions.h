// The options of commands that write movies.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Movies/ExportPreset.h"
#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/Seconds.h"
#include "programs/Episode/EpisodePicture.h"

#include <string_view>

namespace tarnwick {

// A movie to write.
struct MovieTarget {
    ExportPreset preset;
    EncodingSpeed speed = EncodingSpeed::usual;
    Output out;
};

// From --preset, --size, --fps, --bitrate, --draft and -o. Throws CommandError: a size or a bit rate that
// the codec does not support, a file name with another container's ending, a file that cannot be
// written.
MovieTarget movieTargetOf(const Arguments& arguments);

// The value of --size, or the preset's size. Throws UsageError for a size that movies cannot have.
PixelSize movieSizeOf(const Arguments& arguments, const ExportPreset& preset);

// Whether the movie has sound: as --sound or --no-sound says; default: whether the episode defines
// sound. `path` is the name of the episode in messages. Throws CommandError.
bool exportSoundOf(const Arguments& arguments, const Episode& episode);

// Throws CommandError unless above 0 s and at most a day.
void checkMovieLength(double seconds);

// Two pixels side by side share chroma and, in most codecs, two pixels one above the other. The
// maximum is that of level 6.2 of HEVC.
constexpr SizeInPixels movieSizes{
    .leastWidth = 16, .leastHeight = 16, .most = 8192, .isEven = true};

std::vector<std::string_view> presetIDs();

constexpr Option movieOutOption{
    .name = "-o",
    .value = "OUT",
    .help = "the movie, .mp4 or .mov according to the preset; - is standard output",
    .values = FileName{},
    .isRequired = true};
constexpr Option movieStartOption{.name = "--start",
                                  .value = "SECONDS",
                                  .help = "time of the episode at which the movie starts",
                                  .values = secondsFromZero,
                                  .byDefault = "0"};
constexpr Option movieSizeOption{.name = "--size",
                                 .value = "WxH",
                                 .help = "size of the movie",
                                 .values = movieSizes,
                                 .byDefault = "size of the preset"};
constexpr std::array<Option, 7> movieOptions{{
    {.name = "--preset",
     .value = "ID",
     .help = "format of the movie",
     .values = OneOf{presetIDs, "tarnwick presets"},
     .byDefault = "site"},
    {.name = "--fps",
     .value = "N",
     .help = "frame rate of the movie",
     .values = WholeNumber{.least = 1, .most = 240, .unit = "frames per second"},
     .byDefault = "frame rate of the preset"},
    {.name = "--bitrate",
     .value = "N",
     .help = "bit rate of the picture",
     .values =
         WholeNumber{.least = 10'000, .most = 800'000'000, .unit = "bits per second"}, // level 6.2
     .byDefault = "bit rate of the preset"},
    {.name = "--draft",
     .help = "draft: half the width and height, half the bit rate, fast encoding"},
    {.name = "--sound",
     .help = "require sound: an episode without it is an error",
     .excludes = "--no-sound"},
    {.name = "--no-sound", .help = "no sound; without it the movie has the sound of the episode"},
    {.name = "--watermark", .help = "draw the watermark in a corner"},
}};

} // namespace tarnwick
