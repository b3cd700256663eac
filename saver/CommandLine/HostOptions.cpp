#include "saver/CommandLine/HostOptions.h"

#include "TarnwickBase/FrameTimes.h"
#include "TarnwickBase/Quoted.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/CommandLine/Help.h"
#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <vector>

namespace tarnwick {
namespace {

// Of drawing off screen: at most an hour.
constexpr Number runSeconds{.most = 3600, .unit = "seconds", .excludesLeast = true};

constexpr std::array<Option, 18> options{{
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
    {.name = "--param",
     .value = "NAME=VALUE",
     .help = "base value of a parameter, also as --param-NAME VALUE, which XScreenSaver's settings "
             "write",
     .byDefault = "value of the settings document, or of the @param line",
     .isRepeatable = true},
    {.name = "--window-id",
     .value = "ID",
     .help = "number of the window to show the saver in; a window within another one, as in the "
             "settings of desktops, is shown like --preview",
     .values = WholeNumber{.isHexadecimalToo = true},
     .byDefault = "XSCREENSAVER_WINDOW of the environment, else as --root says"},
    {.name = "--root", .help = "show the saver in the root window"},
    {.name = "--window", .help = "show the saver in a window of its own, as without --root"},
    {.name = "--until-input",
     .help =
         "cover all screens of X11 or Wayland until a key, a button or the pointer is moved, for "
         "programs that wait for an idle user",
     .excludes = "--window-id --root --window --preview --offscreen --without-display"},
    {.name = "--output",
     .value = "N",
     .help = "cover only this screen; the first one is 0",
     .values = WholeNumber{.least = 0, .most = 99},
     .byDefault = "all, each by a process of its own",
     .needs = "--until-input"},
    {.name = "--preview",
     .help = "like the small picture in the settings: 15 frames per second and "
             "small text"},
    {.name = "--size",
     .value = "WxH",
     .help = "size of the saver's own window or picture",
     .values = SizeInPixels{},
     .byDefault = "1280x720, or 320x200 with --preview"},
    {.name = "--share",
     .value = "X",
     .help = "share of the machine that the saver may take, of all CPUs with the CPU driver, else "
             "of the GPU's time; the picture is drawn smaller first, then less often; half as much "
             "on battery",
     .values = Number{.most = 1, .excludesLeast = true},
     .byDefault = "0.5 with the CPU driver, 1 with a GPU, no limit in a window of its own"},
    {.name = "--longest-frame",
     .value = "SECONDS",
     .help = "end an episode with the message \"The shader takes too long.\" if it draws one frame "
             "for so long",
     .values =
         Number{.least = FrameTimes::leastLongestFrame, .most = FrameTimes::greatestLongestFrame},
     .byDefault = "20"},
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

void readNumber(const Arguments& arguments, std::string_view option,
                std::optional<double>& number) {
    if (arguments.has(option))
        number = arguments.numberOf(option);
}

constexpr std::string_view paramPrefix = "--param-";

// The words with "--param NAME=VALUE" instead of "--param-NAME VALUE" and "--param-NAME=VALUE".
std::vector<std::string> withPlainParams(std::span<const char* const> words) {
    std::vector<std::string> plain;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string word = words[i];
        if (word.starts_with(paramPrefix.substr(1)))
            word.insert(0, "-");
        if (!word.starts_with(paramPrefix)) {
            plain.push_back(word);
            continue;
        }
        plain.emplace_back("--param");
        plain.push_back(word.substr(paramPrefix.size()));
        if (word.find('=') == std::string::npos && i + 1 < words.size())
            plain.back() += "=" + std::string(words[++i]);
    }
    return plain;
}

void readParam(std::string_view word, ParamValues& values) {
    const std::size_t equals = word.find('=');
    const auto value =
        equals == std::string_view::npos ? std::nullopt : floatOf(word.substr(equals + 1));
    if (!value || !std::isfinite(*value))
        throw UsageError("--param must be NAME=VALUE with a number as the value, not " +
                         quoted(word) + ".");
    values[std::string(word.substr(0, equals))] = *value;
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
    const std::vector<std::string> plain = withPlainParams(words);
    std::vector<const char*> pointers;
    std::ranges::transform(plain, std::back_inserter(pointers), &std::string::c_str);
    const Arguments arguments(hostForm, pointers);
    HostOptions read;
    for (const std::string& param : arguments.values("--param"))
        readParam(param, read.params);
    if (!arguments.operands().empty())
        read.episode = arguments.operands().front();
    readPath(arguments, "--bundle", read.bundle);
    readPath(arguments, "--settings", read.settings);
    read.picture = arguments.textOf("-o");
    read.noSettings = arguments.has("--no-settings");
    if (arguments.has("--window-id"))
        read.window = arguments.unsignedOf("--window-id");
    read.root = arguments.has("--root") && !arguments.has("--window");
    read.untilInput = arguments.has("--until-input");
    if (arguments.has("--output"))
        read.output = static_cast<unsigned>(arguments.integerOf("--output"));
    read.preview = arguments.has("--preview");
    if (const auto size = arguments.value("--size"))
        read.size = sizeOf(*size);
    readNumber(arguments, "--share", read.share);
    readNumber(arguments, "--longest-frame", read.longestFrame);
    readNumber(arguments, "--offscreen", read.offscreen);
    readNumber(arguments, "--without-display", read.withoutDisplay);
    read.help = arguments.has("--help");
    read.version = arguments.has("--version");
    if ((read.settings || read.noSettings) && !read.episode && !read.help)
        throw UsageError("--settings and --no-settings require an episode.");
    return read;
}

} // namespace tarnwick
