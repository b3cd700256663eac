#include "saver/HostOptions.h"

#include <array>
#include <charconv>
#include <string>

namespace tarnwick {

const std::string_view hostUsage =
    R"(tarnwick-saver [OPTIONS] [EPISODE.metal]

Shows the saver of a bundle, or of an episode. An episode with Inputs meets silence.

  --bundle DIR             the bundle to show (else the one beside the program); with an episode,
                           the folder that is made its bundle; what a person wrote or changed
                           in that folder stays
  --settings FILE.json     the settings of the episode (default: NAME.json beside NAME.metal)
  --no-settings            ignores the settings beside the episode
  --window-id ID           shows it in this window; without it the environment's XSCREENSAVER_WINDOW
                           is taken, then --root, then a window of its own; a small window within
                           another, as in XScreenSaver's settings, is shown like --preview
  --root                   shows it in the root window
  --preview                as the small picture in the settings: 15 frames per second and
                           small text
  --size WxH               the size of its own window or picture, in pixels
  --offscreen SECONDS      draws off screen, as fast as it can, and keeps the last frame
  --without-display SECONDS
                           the same where no display can be opened
  -o FILE                  where the last frame goes, as PNG (saver.png)
  --help                   says this
  --version                says which release this is

Status: 0 done, 1 the work failed, as where the episode does not compile, 2 the command line is to be
changed.
)";

namespace {

constexpr std::uint32_t longestSide = 16384;
constexpr double longestRun = 3600; // seconds

[[noreturn]] void refuse(std::string_view option, std::string_view wanted, std::string_view given) {
    throw UsageError("--" + std::string(option) + " takes " + std::string(wanted) + ", not \"" +
                     std::string(given) + "\".");
}

// The whole of `text` as a number; nothing else counts.
template <class Number, class... Form>
std::optional<Number> wholeNumber(std::string_view text, Form... form) {
    Number number{};
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, form...);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

double seconds(std::string_view option, std::string_view text) {
    const auto number = wholeNumber<double>(text);
    if (!number || !(*number > 0 && *number <= longestRun))
        refuse(option, "a number of seconds up to 3600", text);
    return *number;
}

unsigned long windowID(std::string_view option, std::string_view text) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const auto number =
        wholeNumber<unsigned long>(text.substr(isHexadecimal ? 2 : 0), isHexadecimal ? 16 : 10);
    if (!number)
        refuse(option, "the number of a window", text);
    return *number;
}

PixelSize pixelSize(std::string_view option, std::string_view text) {
    const std::size_t cross = text.find('x');
    const auto width = wholeNumber<std::uint32_t>(text.substr(0, cross));
    const auto height =
        cross == text.npos ? std::nullopt : wholeNumber<std::uint32_t>(text.substr(cross + 1));
    const auto isSide = [](auto side) { return side && *side >= 1 && *side <= longestSide; };
    if (!isSide(width) || !isSide(height))
        refuse(option, "a size from 1x1 to 16384x16384", text);
    return {*width, *height};
}

struct Option {
    std::string_view name;
    bool takesValue;
    void (*apply)(HostOptions& options, std::string_view name, std::string_view value);
};

using Text = std::string_view;
constexpr std::array<Option, 13> table{{
    {"bundle", true, [](HostOptions& o, Text, Text value) { o.bundle = value; }},
    {"settings", true, [](HostOptions& o, Text, Text value) { o.settings = value; }},
    {"no-settings", false, [](HostOptions& o, Text, Text) { o.noSettings = true; }},
    {"window-id", true,
     [](HostOptions& o, Text name, Text value) { o.window = windowID(name, value); }},
    {"root", false, [](HostOptions& o, Text, Text) { o.root = true; }},
    {"window", false, [](HostOptions& o, Text, Text) { o.root = false; }},
    {"preview", false, [](HostOptions& o, Text, Text) { o.preview = true; }},
    {"size", true, [](HostOptions& o, Text name, Text value) { o.size = pixelSize(name, value); }},
    {"offscreen", true,
     [](HostOptions& o, Text name, Text value) { o.offscreen = seconds(name, value); }},
    {"without-display", true,
     [](HostOptions& o, Text name, Text value) { o.withoutDisplay = seconds(name, value); }},
    {"o", true, [](HostOptions& o, Text, Text value) { o.picture = value; }},
    {"help", false, [](HostOptions& o, Text, Text) { o.help = true; }},
    {"version", false, [](HostOptions& o, Text, Text) { o.version = true; }},
}};

const Option* optionNamed(std::string_view name) {
    for (const Option& option : table)
        if (option.name == name)
            return &option;
    return nullptr;
}

// A bundle has settings of its own.
void checkSettings(const HostOptions& options) {
    if (options.settings && options.noSettings)
        throw UsageError("--settings and --no-settings exclude each other.");
    if ((options.settings || options.noSettings) && !options.episode && !options.help)
        throw UsageError("--settings and --no-settings require an episode.");
}

} // namespace

HostOptions parseHostOptions(std::span<const char* const> arguments) {
    HostOptions options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        if (!argument.starts_with('-')) {
            if (options.episode)
                throw UsageError("One episode can be shown at a time.");
            options.episode = argument;
            continue;
        }
        const std::string_view text = argument.substr(argument.starts_with("--") ? 2 : 1);
        const std::size_t equals = text.find('=');
        const Option* option = optionNamed(text.substr(0, equals));
        if (option == nullptr || (!option->takesValue && equals != text.npos))
            throw UsageError("There is no option \"" + std::string(argument) + "\".");
        std::string_view value;
        if (option->takesValue && equals != text.npos)
            value = text.substr(equals + 1);
        else if (option->takesValue && index + 1 < arguments.size())
            value = arguments[++index];
        else if (option->takesValue)
            throw UsageError("--" + std::string(option->name) + " takes a value.");
        option->apply(options, option->name, value);
    }
    checkSettings(options);
    return options;
}

} // namespace tarnwick
