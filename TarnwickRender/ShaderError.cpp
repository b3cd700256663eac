#include "TarnwickRender/ShaderError.h"

#include "TarnwickCore/Findings/EpisodeFunctions.h"

#include <algorithm>

namespace tarnwick {

ShaderError compilerError(const AssembledShader& shader, std::string_view compilerText,
                          Fault fault) {
    std::string raw(compilerText);
    std::vector<Diagnostic> diagnostics = DiagnosticParser::parse(compilerText);
    // An error outside the user's text mostly means that a function is missing.
    const bool isOutside =
        std::any_of(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
            return diagnostic.severity == Severity::error && diagnostic.line == 0;
        });
    const bool hasManyFunctions = shader.isMesh() || shader.isParticles();
    if (fault == Fault::ofEpisode && isOutside && hasManyFunctions) {
        const std::string hint = definitionsOf(shader);
        diagnostics.push_back({.severity = Severity::note, .message = hint});
        raw += "\nnote: " + hint;
    }
    return ShaderError(raw, std::move(diagnostics));
}

} // namespace tarnwick
