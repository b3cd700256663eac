// The subcommands, one a file; main.cpp holds the table of them.
#pragma once

#include "programs/Arguments.h"
#include "programs/CommandError.h"

#include <span>
#include <string_view>

namespace tarnwick {

struct Command {
    std::string_view name;
    std::string_view operands; // in the help: "EPISODE"
    std::string_view summary;  // one sentence
    std::span<const Option> options;
    Status (*run)(const Arguments& arguments);
    // Passes its words on as they are: `run` gets them as operands, "--help" among them.
    bool passesWordsOn = false;
};

extern const Command assembleCommand;
extern const Command checkCommand;
extern const Command devicesCommand;
extern const Command exportCommand;
extern const Command handleCommand;
extern const Command joinCommand;
extern const Command loopCommand;
extern const Command metaCommand;
extern const Command mslCommand;
extern const Command newCommand;
extern const Command openCommand;
extern const Command presetsCommand;
extern const Command releaseCommand;
extern const Command saverCommand;
extern const Command shareCommand;
extern const Command sheetCommand;
extern const Command signInCommand;
extern const Command signOutCommand;
extern const Command soundCommand;
extern const Command spectrumCommand;
extern const Command stillCommand;
extern const Command swiftUICommand;
extern const Command tokensCommand;
extern const Command variationsCommand;
extern const Command walkthroughCommand;
extern const Command whoAmICommand;

} // namespace tarnwick
