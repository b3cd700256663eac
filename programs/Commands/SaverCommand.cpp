// tarnwick saver: the screen saver's own program.
#include "programs/Commands/Command.h"
#include "programs/Service/ProgramBeside.h"

namespace tarnwick {

static Status saver(const Arguments& arguments) {
    becomeSaver(arguments.operands());
}

const Command saverCommand{.name = "saver",
                           .operands = "[WORD]...",
                           .summary =
                               "Shows the screen saver; tarnwick saver --help lists its options.",
                           .options = {},
                           .run = saver,
                           .passesWordsOn = true};

} // namespace tarnwick
