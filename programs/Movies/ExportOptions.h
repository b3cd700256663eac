// How a movie is to be written, as the commands that write one are told.
#pragma once

#include "TarnwickCore/Movies/ExportPreset.h"
#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "programs/CommandLine/Arguments.h"
#include "programs/CommandLine/Output.h"
#include "programs/Episode/EpisodePicture.h"

#include <string_view>

namespace tarnwick {

// A movie that is to be written.
struct MovieTarget {
    ExportPreset preset;
    EncodingSpeed speed = EncodingSpeed::usual;
    Output out;
};

// What --preset, --size, --bitrate, --draft and -o say. Throws CommandError: an unknown preset, a
// size or a bit rate that its codec cannot take, a name that ends like another container's or
// cannot be written to.
MovieTarget movieTargetOf(const Arguments& arguments);

// What --size says, or the preset's own. Throws CommandError for a size that its codec cannot take.
PixelSize movieSizeOf(const Arguments& arguments, const ExportPreset& preset);

// Whether the movie is to have sound: what --sound or --no-sound says, else whether the episode
// defines any. Throws CommandError.
bool exportSoundOf(const Arguments& arguments, const Episode& episode);

// Throws CommandError if longer than a day.
void checkMovieLength(double seconds);

constexpr Option presetOption{"--preset", "ID",
                              "the format; tarnwick presets lists them; default: site"};
constexpr Option movieSizeOption{"--size", "WxH",
                                 "of the movie, in pixels, in place of the preset's"};
constexpr Option bitrateOption{"--bitrate", "N",
                               "of the picture, in bits a second, in place of the preset's"};
constexpr Option draftOption{
    "--draft", "", "for looking: half the width and height, half the bits, quick encoding"};
constexpr Option soundOption{"--sound", "", "with the episode's sound, as it is where it has one"};
constexpr Option noSoundOption{"--no-sound", "", "without it"};
constexpr Option watermarkOption{"--watermark", "", "with the mark in a corner"};

} // namespace tarnwick
