// tarnwick assemble: the whole program that an episode becomes.
#include "TarnwickCore/ShaderAssembler.h"
#include "programs/CommandLine/SourceFile.h"
#include "programs/Commands/Command.h"

namespace tarnwick {

static Status assemble(const Arguments& arguments) {
    const std::string episode = sourceText(arguments.operand("episode"));
    const std::string program = ShaderAssembler::assemble(episode).source;
    print(program.ends_with('\n') ? program : program + "\n");
    return Status::done;
}

const Command assembleCommand{.name = "assemble",
                              .operands = "EPISODE",
                              .summary = "Prints the program that the episode becomes.",
                              .options = {},
                              .run = assemble};

} // namespace tarnwick
