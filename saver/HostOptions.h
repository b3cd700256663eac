// What the saver's command line asks for.
#pragma once

#include "saver/Geometry.h"

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>

namespace tarnwick {

// A command line that says nothing sensible: what() is one sentence.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct HostOptions {
    std::optional<std::filesystem::path> bundle;   // else the one beside the program
    std::optional<std::filesystem::path> episode;  // to be made a bundle of
    std::optional<std::filesystem::path> settings; // in place of the document beside the episode
    bool noSettings = false;                       // ignore the document beside the episode
    std::optional<unsigned long> window;           // the id of the X11 window to show in
    bool root = false;                             // show in the root window
    bool preview = false;
    std::optional<PixelSize> size;        // of our own window or picture; each side in [1, 16384]
    std::optional<double> offscreen;      // seconds to draw off screen, (0, 3600]
    std::optional<double> withoutDisplay; // the same where no display can be opened
    std::filesystem::path picture = "saver.png"; // the last frame drawn off screen
    bool help = false, version = false;
};

// What --help says.
extern const std::string_view hostUsage;

// Reads the arguments that follow the program's name. Options may begin with one dash or two and
// take their value from the next argument or after "=". Throws UsageError.
HostOptions parseHostOptions(std::span<const char* const> arguments);

} // namespace tarnwick
