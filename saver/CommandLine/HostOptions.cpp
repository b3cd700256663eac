#include "saver/CommandLine/HostOptions.h"

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/CommandLine/Help.h"

#include <array>

namespace tarnwick {
namespace {

// Of drawing off screen: at most an hour.
constexpr Number runSeconds{.most = 3600, .unit = "seconds", .excludesLeast = true};

constexpr std::array<Option, 13> options{{
    {.name = "--bundle",
     .value = "FOLDER",
     .help = "bundle to show; with an episode, the folder that becomes its bundle: files that a "
             "person wrote or changed in it are kept",
     .values = FileName{},
     .byDefault = "the bundle beside the program"},
    {.name = "--settings",
     .value = "FILE.json",
     .help = "settings document of the episode",
     .values = FileName{},
     .byDefault = "NAME.json beside NAME.metal",
     .excludes = "--no-settings"},
    {.name = "--no-settings", .help = "ignore the settings document beside the episode"},
    {.name = "--window-id",
     .value = "ID",
     .help = "number of the window to show the saver in; a small window within another, as in "
             "XScreenSaver's "
             "settings, is shown like --preview",
     .values = WholeNumber{.isHexadecimalToo = true},
     .byDefault = "XSCREENSAVER_WINDOW of the environment, else as --root says"},
    {.name = "--root", .help = "show the saver in the root window"},
    {.name = "--window", .help = "show the saver in a window of its own, as without --root"},
    {.name = "--preview",
     .help = "like the small picture in the settings: 15 frames per second and "
             "small text"},
    {.name = "--size",
     .value = "WxH",
     .help = "size of the saver's own window or picture",
     .values = SizeInPixels{},
     .byDefault = "1280x720, or 320x200 with --preview"},
    {.name = "--offscreen",
     .value = "SECONDS",
     .help = "draw off screen as fast as possible, and write the last frame to a file",
     .values = runSeconds,
     .byDefault = "none"},
    {.name = "--without-display",
     .value = "SECONDS",
     .help = "like --offscreen, but only if no display can be opened",
     .values = runSeconds,
     .byDefault = "none"},
    {.name = "-o",
     .value = "FILE.png",
     .help = "the last frame drawn off screen",
     .values = FileName{},
     .byDefault = "saver.png"},
    {.name = "--help", .help = "print this help"},
    {.name = "--version", .help = "print the release"},
}};

void readPath(const Arguments& arguments, std::string_view option,
              std::optional<std::filesystem::path>& path) {
    if (const auto given = arguments.value(option))
        path = *given;
}

void readSeconds(const Arguments& arguments, std::string_view option,
                 std::optional<double>& seconds) {
    if (arguments.has(option))
        seconds = arguments.numberOf(option);
}

} // namespace

constinit const CommandForm hostForm{
    .operands = "[EPISODE.metal]", .options = options, .allowsOneDash = true};
constinit const std::string_view hostSummary =
    "Shows the saver of a bundle, or of an episode. An episode with Inputs hears silence.";

std::string hostHelp() {
    return helpText("tarnwick-saver", hostForm, hostSummary) +
           "\nStatus: 0 done, 1 failed, for example because the episode does not compile, 2 usage "
           "error.\n";
}

HostOptions parseHostOptions(std::span<const char* const> words) {
    const Arguments arguments(hostForm, words);
    HostOptions read;
    if (!arguments.operands().empty())
        read.episode = arguments.operands().front();
    readPath(arguments, "--bundle", read.bundle);
    readPath(arguments, "--settings", read.settings);
    read.picture = arguments.textOf("-o");
    read.noSettings = arguments.has("--no-settings");
    if (arguments.has("--window-id"))
        read.window = arguments.unsignedOf("--window-id");
    read.root = arguments.has("--root") && !arguments.has("--window");
    read.preview = arguments.has("--preview");
    if (const auto size = arguments.value("--size"))
        read.size = sizeOf(*size);
    readSeconds(arguments, "--offscreen", read.offscreen);
    readSeconds(arguments, "--without-display", read.withoutDisplay);
    read.help = arguments.has("--help");
    read.version = arguments.has("--version");
    if ((read.settings || read.noSettings) && !read.episode && !read.help)
        throw UsageError("--settings and --no-settings require an episode.");
    return read;
}

} // namespace tarnwick
