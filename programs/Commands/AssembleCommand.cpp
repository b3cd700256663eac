// tarnwick assemble: the whole program that an episode becomes.
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"

namespace tarnwick {

static Status assemble(const Arguments& arguments) {
    const std::string program = episodeAt(arguments.operand()).shader.source;
    printForeign(program.ends_with('\n') ? program : program + "\n");
    return Status::done;
}

const Command assembleCommand{.name = "assemble",
                              .operands = "EPISODE",
                              .summary = "Prints the assembled program of the episode.",
                              .options = {},
                              .run = assemble};

} // namespace tarnwick
