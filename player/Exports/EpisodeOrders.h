// The orders to write movies, pictures and packages of an episode as it is edited now.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Movies/VideoChapters.h"
#include "player/Exports/InputCopies.h"
#include "player/Exports/Order.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

// A document as it is now, with its unsaved changes.
struct EpisodeCopy {
    std::string title;
    std::string text;
    Settings settings{};
    InputCopies inputs{}; // of all but packages

    std::string fileName() const; // "Turning.metal", a safe name
};

// Adds the channels of the episode as --channel, with copies of episodes.
void addChannels(Order& order, const EpisodeCopy& episode);

// Adds the sound file that the episode hears as --audio.
void addHeard(Order& order, const EpisodeCopy& episode);

// The settings as a document with that name; without values and keys if one is not finite.
std::string settingsDocument(Settings settings, const std::string& name);

// The format of a movie. Absent members: those of the preset.
struct MovieFormat {
    std::string_view preset = "web"; // the id of an ExportPreset
    std::optional<PixelSize> size{};
    std::optional<std::int64_t> framesPerSecond{};
    bool isDraft = false;
    bool hasSound = true; // if the episode has one, or a file is played
    bool hasWatermark = false;
};

struct MovieRequest {
    EpisodeCopy episode;
    MovieFormat format{};
    double start = 0, duration = 10; // seconds of the episode
    double crossfade = 0;            // seconds; of a loop
    std::vector<VideoChapters::Chapter> chapters{};
    std::optional<std::filesystem::path> performance{}; // replaces values, keys, range and inputs
    std::filesystem::path output{};
};
Order movieOrder(const MovieRequest& request);

// The search for the length at which the episode loops. Prints JSON, and draws the seam.
struct LoopRequest {
    EpisodeCopy episode;
    double start = 0, around = 8, range = 0.5, crossfade = 0; // seconds
    std::int64_t framesPerSecond = 30;
};
inline constexpr const char* seamFile = "seam.png"; // in the order's own folder
Order loopOrder(const LoopRequest& request);

struct StillRequest {
    EpisodeCopy episode;
    PixelSize size{1920, 1080};
    double time = 0;         // seconds of the episode
    std::uint32_t frame = 0; // its number
    bool hasAlpha = false;   // keeps the episode's alpha
    std::filesystem::path output{};
};
Order stillOrder(const StillRequest& request);

// Variations near the episode's settings.
struct VariationsRequest {
    EpisodeCopy episode;
    std::uint64_t seed = 1;
    std::int64_t first = 1, count = 12; // of the series
    float spread = 0.5f;                // as in Variations::make
    double seconds = 10;                // of each variation; of a movie
    bool isMovie = true;                // with chapters; otherwise a picture of all
    MovieFormat format{};               // of a movie
    std::filesystem::path output{};
};
Order variationsOrder(const VariationsRequest& request);

struct WalkthroughRequest {
    EpisodeCopy episode;
    std::vector<std::filesystem::path> stages{}; // earlier versions, the first one first
    bool isMovie = true;                         // otherwise a folder of pictures
    MovieFormat format{};                        // of a movie
    PixelSize size{1920, 1080};                  // of pictures
    double pageSeconds = 6;                      // of a movie
    double start = 0;                            // seconds of the episode; of a movie
    std::filesystem::path output{};
};
Order walkthroughOrder(const WalkthroughRequest& request);

struct PackageRequest {
    EpisodeCopy episode;
    std::string title; // from which the names of the package's types are made
    std::filesystem::path output{};
};
Order packageOrder(const PackageRequest& request);

} // namespace tarnwick::player
