// The options of the saver's command line.
#pragma once

#include "TarnwickBase/PixelSize.h"
#include "TarnwickCore/CommandLine/Option.h"
#include "TarnwickCore/Params.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarnwick {

struct HostOptions {
    std::optional<std::filesystem::path> bundle;   // else the one beside the program
    std::optional<std::filesystem::path> episode;  // a bundle is made from it
    std::optional<std::filesystem::path> settings; // instead of the document beside the episode
    bool noSettings = false;                       // ignore the document beside the episode
    ParamValues params;                            // base values, instead of those of the settings
    std::optional<unsigned long> window;           // the id of the X11 window to show in
    bool root = false;                             // show in the root window
    bool untilInput = false;                       // cover the screens until the first input
    std::optional<unsigned> output;                // the number of the only screen to cover
    bool preview = false;
    std::optional<PixelSize> size;        // of the own window or picture; each side in [1, 16384]
    std::optional<double> share;          // of the machine, (0, 1]
    std::optional<double> longestFrame;   // seconds, [1, 600]
    std::optional<double> offscreen;      // seconds to draw off screen, (0, 3600]
    std::optional<double> withoutDisplay; // the same, if no display can be opened
    std::filesystem::path picture;        // the last frame drawn off screen
    bool help = false, version = false;
};

// tarnwick-saver's words.
extern const CommandForm hostForm;
extern const std::string_view hostSummary; // one sentence or two

std::string hostHelp();

// Reads the arguments that follow the program's name. Options may begin with one dash or two.
// Throws UsageError (Arguments.h).
HostOptions parseHostOptions(std::span<const char* const> arguments);

} // namespace tarnwick
