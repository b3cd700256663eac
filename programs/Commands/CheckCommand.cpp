// tarnwick check: what the compiler and the declarations' readers find in an episode.
#include "TarnwickCore/Findings.h"
#include "TarnwickGPU/Device.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Terminal/Findings.h"

#include <array>
#include <unistd.h>

namespace tarnwick {

static Status check(const Arguments& arguments) {
    const Episode episode = episodeAt(arguments.operand(), EpisodeBytes::any);
    const auto device = gpu::Device::systemDefault();
    const EpisodeFindings checked =
        checkedEpisode(episode, device.get(),
                       arguments.has("-W") ? EpisodeWarnings::more : EpisodeWarnings::usual);
    const std::vector<Finding> findings =
        withDeclarationWarnings(episode, findingsOf(episode, checked.diagnostics));
    print(arguments.has("--json")
              ? findingsJSON(episode.path, findings, checked.raw)
              : findingsText(episode.path, episode.text, findings, coloursOf(STDOUT_FILENO)));
    if (!checked.compiles && firstError(findings).empty())
        failure(episode.path + " does not compile: " + firstErrorLine(checked.raw));
    if (!checked.hasRoom)
        failure(checked.raw);
    return checked.compiles ? Status::done : Status::failed;
}

static constexpr std::array<Option, 2> checkOptions{{
    {.name = "-W", .help = "more warnings: unused and unset variables, integer divisions"},
    {.name = "--json", .help = "print JSON, with the compiler's own text"},
}};

const Command checkCommand{
    .name = "check",
    .operands = "EPISODE",
    .summary = "Prints the findings about an episode, as EPISODE:line:column: severity: message.",
    .options = checkOptions,
    .run = check};

} // namespace tarnwick
