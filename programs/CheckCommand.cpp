// tarnwick check: what the compiler finds in an episode.
#include "TarnwickGPU/Device.h"
#include "programs/Command.h"
#include "programs/EpisodeProgram.h"
#include "programs/Findings.h"
#include "programs/SourceFile.h"

#include <algorithm>
#include <array>

namespace tarnwick {

static Status check(const Arguments& arguments) {
    const std::string_view path = arguments.operand("episode");
    const auto device = gpu::Device::systemDefault();
    const EpisodeFindings findings = findingsOf(path, sourceText(path), device.get());
    print(arguments.has("--json") ? findingsJSON(path, findings.diagnostics, findings.raw)
                                  : findingsText(path, findings.diagnostics));
    const bool isExplained =
        std::any_of(findings.diagnostics.begin(), findings.diagnostics.end(),
                    [](const Diagnostic& finding) { return finding.severity == Severity::error; });
    if (!findings.compiles && !isExplained)
        failure(std::string(path) + " does not compile: " + findings.raw);
    if (!findings.hasRoom)
        failure(findings.raw);
    return findings.compiles ? Status::done : Status::failed;
}

static constexpr std::array<Option, 1> checkOptions{
    {{"--json", "", "as JSON, with the compiler's own text"}}};

const Command checkCommand{
    .name = "check",
    .operands = "EPISODE",
    .summary = "Prints what the compiler finds, as EPISODE:line:column: severity: message.",
    .options = checkOptions,
    .run = check};

} // namespace tarnwick
