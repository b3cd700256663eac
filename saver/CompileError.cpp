#include "saver/CompileError.h"

#include "TarnwickCore/Findings.h"

namespace tarnwick {

std::string compileErrorText(const Episode& episode, const ShaderError& error) {
    const std::vector<Finding> errors = errorsAmong(findingsOf(episode, error.diagnostics));
    if (errors.empty())
        return error.raw;
    const Diagnostic& first = errors.front().diagnostic;
    const std::string line =
        inOneLine(errors.front(), std::string(ShaderAssembler::fileName) + ":" +
                                      std::to_string(first.line) + ":" +
                                      std::to_string(first.column));
    return errors.size() == 1 ? line
                              : line + "\nand " + std::to_string(errors.size() - 1) + " more";
}

} // namespace tarnwick
