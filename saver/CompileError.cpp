#include "saver/CompileError.h"

#include "TarnwickCore/Findings.h"

namespace tarnwick {

static std::string lineOf(const Finding& finding) {
    const auto& [diagnostic, hint] = finding;
    std::string line = diagnostic.message;
    if (diagnostic.line > 0)
        line.insert(0, std::string(ShaderAssembler::fileName) + ":" +
                           std::to_string(diagnostic.line) + ":" +
                           std::to_string(diagnostic.column) + ": ");
    return hint.empty() ? line : line + " (" + hint + ")";
}

std::string compileErrorText(const Episode& episode, const ShaderError& error) {
    std::string first;
    int others = 0;
    for (const Finding& finding : findingsOf(episode, error.diagnostics)) {
        if (finding.diagnostic.severity != Severity::error)
            continue;
        if (first.empty())
            first = lineOf(finding);
        else
            ++others;
    }
    if (first.empty())
        return error.raw;
    return others == 0 ? first : first + "\nand " + std::to_string(others) + " more";
}

} // namespace tarnwick
