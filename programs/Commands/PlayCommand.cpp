// tarnwick play: the desktop program.
#include "programs/Commands/Command.h"
#include "programs/Service/ProgramBeside.h"

namespace tarnwick {

static Status play(const Arguments& arguments) {
    becomePlayer(arguments.operands());
}

const Command playCommand{
    .name = "play",
    .operands = "[WORD]...",
    .summary = "Opens episodes or a folder in the player; tarnwick play --help lists "
               "its options.",
    .options = {},
    .run = play,
    .passesWordsOn = true};

} // namespace tarnwick
