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

// The title stands on the first line, behind the slashes of a comment.
std::string_view titleOf(const Arguments& arguments) {
    const std::string_view title = arguments.operand("title");
    if (!isUTF8(title))
        misuse("The title is not text in UTF-8.");
    if (trimmed(title).empty())
        misuse("The title is empty.");
    if (linesOf(title).front() != title)
        misuse("The title is more than one line.");
    return title;
}

// A file of the title's name in the current folder, or with a number behind it where that is taken.
fs::path placeFor(std::string_view title) {
    std::string name(title);
    std::ranges::replace(name, '/', '-'); // a title has no folders
    // With an ending of ours it loses no other: "Vol. 2" stays whole.
    std::string stem = fs::path(FileNames::safe(name + ".metal")).stem();
    // Commands would take a name that begins with a dash for an option.
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
    const Template* chosen = nullptr;
    for (const Template& each : templates) {
        if (!arguments.has(each.option))
            continue;
        if (chosen)
            misuse(std::string(chosen->option) + " and " + std::string(each.option) +
                   " exclude each other.");
        chosen = &each;
    }
    return chosen ? chosen->text(title) : ShaderTemplate::newShader(title);
}

// With the line that `meta`, `sheet` and movies read the title from, before the template's own.
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
    {"--particles", "", "a particle episode with trails"},
    {"--grid", "", "a grid episode: a surface in depth"},
    {"--sound", "", "a tune, and a picture that hears it"},
    {"--inputs", "", "an episode that reads sound, pictures and its own last frame"},
    {"-o", "FILE.metal",
     "where to write it, or - for standard output; default: the title's name in this "
     "folder"},
}};

} // namespace

const Command newCommand{.name = "new",
                         .operands = "TITLE",
                         .summary = "Writes an episode to start from and prints its file's name; "
                                    "no file is overwritten.",
                         .options = newOptions,
                         .run = makeNew};

} // namespace tarnwick
