// tarnwick play: the desktop program.
#include "player/CommandLine/PlayerForm.h"
#include "programs/Commands/Command.h"
#include "programs/Service/ProgramBeside.h"

namespace tarnwick {

static Status play(const Arguments& arguments) {
    becomePlayer(arguments.operands());
}

const Command playCommand{
    .name = "play",
    .summary = "Opens episodes or a folder in the player; tarnwick play --help lists "
               "its options.",
    .options = {},
    .run = play,
    .passesWordsTo = &player::playerForm};

} // namespace tarnwick
