// tarnwick new: a file with an episode to start from.
#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/Episode/ShaderTemplate.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "programs/CommandLine/NewFile.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// The title, which becomes a comment on the first line.
std::string_view titleOf(const Arguments& arguments) {
    const std::string_view title = arguments.operand();
    if (!isUTF8(title))
        misuse("The title is not text in UTF-8.");
    if (trimmed(title).empty())
        misuse("The title is empty.");
    if (linesOf(title).front() != title)
        misuse("The title is more than one line.");
    return title;
}

// A file with the title's name in the current folder, with a number if the name is taken.
fs::path placeFor(std::string_view title) {
    std::string name(title);
    std::ranges::replace(name, '/', '-'); // a title has no folders
    // Our ending keeps the title whole: "Vol. 2" has no ending then.
    std::string stem = fs::path(FileNames::safe(name + ".metal")).stem();
    // To commands a name that begins with a dash is an option.
    stem.erase(0, stem.find_first_not_of("-. "));
    return FileNames::unique(
        FileNames::safe(stem.empty() ? "" : stem + ".metal"), "",
        [](const fs::path& file) { return fs::exists(fs::symlink_status(file)); });
}

struct Template {
    std::string_view option;
    std::string (*text)(std::string_view title);
};

constexpr std::array<Template, 4> templates{{
    {"--particles", ShaderTemplate::particlesShader},
    {"--grid", ShaderTemplate::gridShader},
    {"--sound", ShaderTemplate::soundShader},
    {"--inputs", ShaderTemplate::inputsShader},
}};

std::string templateText(const Arguments& arguments, std::string_view title) {
    for (const Template& each : templates)
        if (arguments.has(each.option))
            return each.text(title);
    return ShaderTemplate::newShader(title);
}

// Adds the line from which `meta`, `sheet` and movies read the title.
std::string withEpisodeLine(std::string text, std::string_view title) {
    const std::size_t firstDirective = text.find("\n// @");
    return text.insert(firstDirective, "\n// @episode 1 " + std::string(trimmed(title)));
}

Status makeNew(const Arguments& arguments) {
    const std::string_view title = titleOf(arguments);
    const std::string text = withEpisodeLine(templateText(arguments, title), title);
    const auto given = Output::of(arguments, "-o", FileKind::episode);
    if (given && given->isStandardOutput()) {
        print(text);
        return Status::done;
    }
    const fs::path path = given ? fs::path(given->name()) : placeFor(title);
    if (!writeNewFile(path, text))
        misuse(path.string() + " already exists and is not replaced.");
    print(path.string() + "\n");
    return Status::done;
}

constexpr std::array<Option, 5> newOptions{{
    {.name = "--particles",
     .help = "a particle episode with trails",
     .excludes = "--grid --sound --inputs"},
    {.name = "--grid", .help = "a grid episode: a surface in 3D", .excludes = "--sound --inputs"},
    {.name = "--sound", .help = "a tune, and a picture that hears it", .excludes = "--inputs"},
    {.name = "--inputs", .help = "an episode that reads sound, pictures and its last frame"},
    {.name = "-o",
     .value = "FILE.metal",
     .help = "file to write; - is standard output",
     .values = FileName{},
     .byDefault = "a name made from TITLE in the current folder"},
}};

} // namespace

const Command newCommand{
    .name = "new",
    .operands = "TITLE",
    .summary = "Writes a new episode and prints the name of its file; no file is overwritten.",
    .options = newOptions,
    .run = makeNew};

} // namespace tarnwick
