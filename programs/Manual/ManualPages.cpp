#include "programs/Manual/ManualPages.h"

#include "TarnwickBase/Version.h"
#include "TarnwickCore/CommandLine/ManualPage.h"
#include "player/CommandLine/PlayerForm.h"
#include "programs/Manual/ManualRows.h"
#include "saver/CommandLine/HostOptions.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <ranges>

namespace tarnwick {
namespace {

std::vector<std::string> wordsOf(std::string_view line) {
    std::vector<std::string> words;
    for (const auto part : std::views::split(line, ' '))
        if (!part.empty())
            words.emplace_back(part.begin(), part.end());
    return words;
}

// Throws UsageError if the example is not a command line of the command.
void checkExample(const Command& command, const ManualExample& example) {
    const auto words = wordsOf(example.words);
    std::vector<const char*> pointers;
    std::ranges::transform(words, std::back_inserter(pointers), &std::string::c_str);
    const CommandForm form = formOf(command);
    const Arguments arguments(form, pointers);
}

ManualSection examplesOf(const Command& command, const std::string& start) {
    ManualSection section{.title = "EXAMPLES"};
    for (const ManualExample& example : manualExamples)
        if (example.command == command.name) {
            checkExample(command, example);
            section.rows.push_back(
                {start + (example.words.empty() ? "" : " ") + std::string(example.words),
                 std::string(example.purpose)});
        }
    return section;
}

ManualSection statusSection() {
    return {.title = "EXIT STATUS",
            .rows = {{"0", "Done."},
                     {"1", "Failed, for example because an episode does not compile. The reason is "
                           "one sentence on standard error."},
                     {"2", "Usage error: a word of the command line is wrong, or a file cannot be "
                           "read or may not be replaced."}}};
}

ManualSection factsOf(std::string title, std::span<const ManualFact> facts,
                      std::string_view program) {
    ManualSection section{.title = std::move(title)};
    for (const ManualFact& fact : facts)
        if (std::ranges::count(wordsOf(fact.programs), program) > 0)
            section.rows.push_back({std::string(fact.name), std::string(fact.text)});
    return section;
}

// A page without its title, with what all pages have.
ManualPage pageOf(std::string name, const CommandForm& form, std::string summary) {
    return {.name = name,
            .command = std::move(name),
            .release = "Tarnwick " + std::string(programVersion()),
            .date = std::string(programDate()),
            .form = form,
            .summary = std::move(summary)};
}

void addSections(ManualPage& page, ManualSection examples, std::string_view program) {
    for (ManualSection section : {statusSection(), factsOf("ENVIRONMENT", manualVariables, program),
                                  factsOf("FILES", manualPaths, program), std::move(examples)})
        if (!section.rows.empty())
            page.sections.push_back(std::move(section));
}

// The program that the command becomes has a page of its own name.
std::string programOf(const Command& command) {
    return command.passesWordsTo == &player::playerForm ? "tarnwick-player" : "tarnwick-saver";
}

std::string pageNameOf(const Command& command) {
    std::string name = "tarnwick-" + std::string(command.name);
    std::ranges::replace(name, ' ', '-');
    return name;
}

ManualPage commandPage(const Command& command) {
    const std::string name = pageNameOf(command);
    ManualPage page = pageOf(name, formOf(command), std::string(command.summary));
    page.command = "tarnwick " + std::string(command.name);
    page.related = {"tarnwick"};
    std::string facts;
    if (command.passesWordsTo) {
        facts = programOf(command);
        page.summary = command.passesWordsTo == &hostForm ? hostSummary : player::playerSummary;
        if (name == facts)
            page.command = name;
        else
            page.related.emplace_back(facts);
    }
    addSections(page, examplesOf(command, page.command), facts);
    return page;
}

// tarnwick-player is not the name of a command.
ManualPage programPage(const Command& command) {
    const std::string name = programOf(command);
    ManualPage page = commandPage(command);
    page.name = page.command = name;
    page.sections.clear();
    page.related = {"tarnwick"};
    addSections(page, examplesOf(command, name), name);
    return page;
}

constexpr std::array<Option, 2> mainOptions{{
    {.name = "--help", .help = "list the commands"},
    {.name = "--version", .help = "print the release"},
}};

ManualPage mainPage(std::span<const Command* const> commands) {
    ManualPage page = pageOf("tarnwick", {.operands = "COMMAND [WORD]...", .options = mainOptions},
                             "Draws live shaders, called episodes: checks them, draws stills, "
                             "exports movies and sound, and shares them. tarnwick help COMMAND "
                             "prints the options of a command.");
    ManualSection list{.title = "COMMANDS"};
    for (const Command* command : commands) {
        list.rows.push_back({std::string(command->name), std::string(command->summary)});
        page.related.push_back(pageNameOf(*command));
    }
    std::ranges::sort(page.related);
    page.sections.push_back(std::move(list));
    addSections(page, {}, "tarnwick");
    return page;
}

} // namespace

std::vector<ManualFile> manualFiles(std::span<const Command* const> commands) {
    std::vector<ManualFile> files{{"tarnwick.1", roffOf(mainPage(commands))}};
    for (const Command* command : commands) {
        files.push_back({pageNameOf(*command) + ".1", roffOf(commandPage(*command))});
        if (command->passesWordsTo && programOf(*command) != pageNameOf(*command))
            files.push_back({programOf(*command) + ".1", roffOf(programPage(*command))});
    }
    return files;
}

Status writeManual(std::span<const Command* const> commands, std::span<const char* const> words) {
    if (words.size() != 1)
        misuse("tarnwick --manual requires one folder.");
    for (const ManualFile& file : manualFiles(commands)) {
        const std::filesystem::path path = std::filesystem::path(words[0]) / file.name;
        std::ofstream stream(path, std::ios::binary);
        if (!(stream << file.roff).flush())
            failure(path.string() + " cannot be written.");
    }
    return Status::done;
}

} // namespace tarnwick
