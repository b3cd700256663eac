// tarnwick saver: the screen saver's own program.
#include "programs/Commands/Command.h"
#include "programs/Service/ProgramBeside.h"
#include "saver/CommandLine/HostOptions.h"

namespace tarnwick {

static Status saver(const Arguments& arguments) {
    becomeSaver(arguments.operands());
}

const Command saverCommand{.name = "saver",
                           .summary =
                               "Shows the screen saver; tarnwick saver --help lists its options.",
                           .options = {},
                           .run = saver,
                           .passesWordsTo = &hostForm};

} // namespace tarnwick
