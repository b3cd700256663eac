// The subcommands. main.cpp holds the table of them.
#pragma once

#include "TarnwickCore/CommandLine/Arguments.h"
#include "programs/CommandLine/CommandError.h"

#include <span>
#include <string_view>

namespace tarnwick {

struct Command {
    std::string_view name;     // one word, or two: "saver install"
    std::string_view operands; // as in CommandForm
    std::string_view summary;  // one sentence
    std::span<const Option> options;
    Status (*run)(const Arguments& arguments);
    // Set for a command that becomes another program, which has this form. The words are not
    // parsed: `run` gets all of them as operands, also "--help".
    const CommandForm* passesWordsTo = nullptr;
};

// The command that the first word or the first two name; null without one. `wordCount` is set to
// the number of words of its name.
const Command* commandIn(std::span<const Command* const> commands,
                         std::span<const char* const> words, std::size_t& wordCount);

// The form of the command, or of the program that it becomes.
inline CommandForm formOf(const Command& command) {
    return command.passesWordsTo
               ? *command.passesWordsTo
               : CommandForm{.operands = command.operands, .options = command.options};
}

extern const Command assembleCommand;       // AssembleCommand.cpp
extern const Command checkCommand;          // CheckCommand.cpp
extern const Command devicesCommand;        // DevicesCommand.cpp
extern const Command doctorCommand;         // DoctorCommand.cpp
extern const Command exportCommand;         // ExportCommand.cpp
extern const Command handleCommand;         // AccountCommands.cpp
extern const Command joinCommand;           // JoinCommand.cpp
extern const Command loopCommand;           // LoopCommand.cpp
extern const Command metaCommand;           // MetaCommand.cpp
extern const Command mslCommand;            // MSLCommand.cpp
extern const Command newCommand;            // NewCommand.cpp
extern const Command openCommand;           // OpenCommand.cpp
extern const Command playCommand;           // PlayCommand.cpp
extern const Command presetsCommand;        // PresetsCommand.cpp
extern const Command releaseCommand;        // ReleaseCommand.cpp
extern const Command saverCommand;          // SaverCommand.cpp
extern const Command saverInstallCommand;   // Savers/SaverInstallCommands.cpp
extern const Command saverListCommand;      // Savers/SaverInstallCommands.cpp
extern const Command saverPreviewCommand;   // Savers/SaverInstallCommands.cpp
extern const Command saverUninstallCommand; // Savers/SaverInstallCommands.cpp
extern const Command serveCommand;          // ServeCommand.cpp
extern const Command shareCommand;          // ShareCommand.cpp
extern const Command sheetCommand;          // SheetCommand.cpp
extern const Command signInCommand;         // SignInCommand.cpp
extern const Command signOutCommand;        // SignOutCommand.cpp
extern const Command soundCommand;          // SoundCommand.cpp
extern const Command spectrumCommand;       // SpectrumCommand.cpp
extern const Command stillCommand;          // StillCommand.cpp
extern const Command swiftUICommand;        // SwiftUICommand.cpp
extern const Command thumbnailCommand;      // ThumbnailCommand.cpp
extern const Command tokensCommand;         // TokensCommand.cpp
extern const Command variationsCommand;     // VariationsCommand.cpp
extern const Command walkthroughCommand;    // WalkthroughCommand.cpp
extern const Command webCommand;            // WebCommand.cpp
extern const Command whoAmICommand;         // AccountCommands.cpp

} // namespace tarnwick
