// tarnwick: checks, assembles, compiles, draws and hears episodes from the command line.
#include "TarnwickBase/Crashes.h"
#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/FreedMemory.h"
#include "TarnwickCore/CommandLine/Help.h"
#include "programs/Commands/Command.h"
#include "programs/Completion/CompletionAnswer.h"
#include "programs/Doctor/ProgramReport.h"
#include "programs/Manual/ManualPages.h"

#include <array>
#include <string>

namespace tarnwick {
namespace {

// clang-format off
constexpr std::array commands{
    &newCommand,
    &metaCommand,
    &checkCommand,
    &tokensCommand,
    &assembleCommand,
    &mslCommand,
    &swiftUICommand,
    &webCommand,
    &serveCommand,
    &stillCommand,
    &sheetCommand,
    &thumbnailCommand,
    &variationsCommand,
    &walkthroughCommand,
    &soundCommand,
    &spectrumCommand,
    &exportCommand,
    &joinCommand,
    &loopCommand,
    &presetsCommand,
    &signInCommand,
    &signOutCommand,
    &whoAmICommand,
    &handleCommand,
    &shareCommand,
    &openCommand,
    &releaseCommand,
    &playCommand,
    &saverCommand,
    &saverInstallCommand,
    &saverListCommand,
    &saverPreviewCommand,
    &saverUninstallCommand,
    &devicesCommand,
    &doctorCommand,
};
// clang-format on

std::string programHelp() {
    std::string help = "usage: tarnwick COMMAND ...\n\n";
    constexpr std::size_t column = 19;
    for (const Command* command : commands) {
        std::string title = "  " + std::string(command->name);
        title.resize(column, ' ');
        help += title + wrapped(command->summary, column) + "\n";
    }
    return help +
           "\ntarnwick help COMMAND and tarnwick COMMAND --help print the options of a command; "
           "tarnwick --version\nprints the release. Status: 0 done, 1 failed, 2 usage error.\n";
}

bool asksForHelp(std::span<const char* const> words) {
    for (const std::string_view word : words) {
        if (word == "--")
            return false;
        if (word == "--help" || word == "-h")
            return true;
    }
    return false;
}

Status runCommand(const Command& command, std::span<const char* const> words) {
    if (command.passesWordsTo) {
        std::vector<const char*> operands{"--"};
        operands.insert(operands.end(), words.begin(), words.end());
        return command.run(Arguments({.operands = "[WORD]..."}, operands));
    }
    if (asksForHelp(words)) {
        print(helpText("tarnwick " + std::string(command.name), formOf(command), command.summary));
        return Status::done;
    }
    return command.run(Arguments(formOf(command), words));
}

// Requires a word.
const Command& commandNamed(std::span<const char* const> words, std::size_t& wordCount) {
    const Command* command = commandIn(commands, words, wordCount);
    if (command == nullptr)
        misuse(quoted(words[0]) + " is not a command; tarnwick --help lists them.");
    return *command;
}

Status help(std::span<const char* const> words) {
    if (words.empty()) {
        print(programHelp());
        return Status::done;
    }
    std::size_t wordCount = 0;
    const Command& command = commandNamed(words, wordCount);
    if (words.size() > wordCount)
        misuse(quoted(words[wordCount]) + " is unexpected: tarnwick help takes one command.");
    return runCommand(command, std::array{"--help"});
}

Status runProgram(std::span<const char* const> words) {
    if (words.empty())
        misuse("No command is given; tarnwick --help lists them.");
    const std::string_view name = words[0];
    if (name == "help")
        return help(words.subspan(1));
    if (name == "--help" || name == "-h")
        return help({});
    if (name == "--complete") { // run by shells
        print(completionAnswer(commands, words.subspan(1)));
        return Status::done;
    }
    if (name == "--manual") // run by the build
        return writeManual(commands, words.subspan(1));
    if (name == "--version" || name == "version") {
        print(programReport());
        return Status::done;
    }
    std::size_t wordCount = 0;
    const Command& command = commandNamed(words, wordCount);
    return runCommand(command, words.subspan(wordCount));
}

// Tells the error, if there is one.
Status statusOf(std::span<const char* const> words) {
    try {
        return runProgram(words);
    } catch (const CommandError& error) {
        tell(error.what());
        return error.status;
    } catch (const UsageError& error) {
        tell(error.what());
        return Status::misused;
    } catch (const std::exception& error) {
        tell(sentenceOf(error));
    }
    return Status::failed;
}

} // namespace
} // namespace tarnwick

int main(int count, char** words) {
    using namespace tarnwick;
    tellOfCrashes("tarnwick");
    keepFreedMemory();
    const EndSignals signals;
    const std::span<const char* const> all(words, static_cast<std::size_t>(count));
    const Status status = statusOf(all.subspan(all.empty() ? 0 : 1));
    signals.endIfArrived();
    return static_cast<int>(status);
}
