#include "player/CommandLine/PlayerForm.h"

#include <array>

namespace tarnwick::player {
namespace {

constexpr std::array<Option, 5> options{{
    {.name = "--channel",
     .value = "N=FILE",
     .help = "show a picture, a movie, a camera (/dev/videoN) or another episode as channel N",
     .byDefault = "black",
     .isRepeatable = true},
    {.name = "--osc",
     .value = "PORT",
     .help = "let OSC messages to this UDP port move the parameters; from this machine, unless a "
             "network is chosen in the window",
     .values = WholeNumber{.least = 1, .most = 65535},
     .byDefault = "the port chosen in the window; none at first"},
    {.name = "--audio",
     .value = "INPUT",
     .help = "the sound that episodes react to: own, microphone, desktop or a media file",
     .byDefault = "own"},
    {.name = "--help", .help = "print this help"},
    {.name = "--version", .help = "print the release"},
}};

} // namespace

constinit const CommandForm playerForm{.operands = "[EPISODE.metal | FOLDER | LINK]...",
                                       .options = options};
constinit const std::string_view playerSummary =
    "Opens episodes in the player, shows the episodes of a folder, or downloads the shader of a link "
    "of the sharing service.";

} // namespace tarnwick::player
