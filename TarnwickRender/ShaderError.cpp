#include "TarnwickRender/ShaderError.h"

#include <algorithm>

namespace tarnwick {
namespace {

// What an episode of this kind must define; empty for a fragment episode.
std::string signaturesHint(const AssembledShader& shader) {
    if (shader.isMesh())
        return "a vertex episode defines:\n" + std::string(ShaderAssembler::meshSignatures);
    if (shader.isParticles())
        return "a particle episode defines:\n" + std::string(ShaderAssembler::particleSignatures);
    return {};
}

} // namespace

ShaderError compilerError(const AssembledShader& shader, std::string_view compilerText,
                          Fault fault) {
    std::string raw(compilerText);
    std::vector<Diagnostic> diagnostics = DiagnosticParser::parse(compilerText);
    // An error outside the user's text mostly means that the generated code misses a function.
    const bool isOutside =
        std::any_of(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
            return diagnostic.severity == Severity::error && diagnostic.line == 0;
        });
    if (const std::string hint = signaturesHint(shader);
        fault == Fault::ofEpisode && isOutside && !hint.empty()) {
        diagnostics.push_back({.severity = Severity::note, .message = hint});
        raw += "\nnote: " + hint;
    }
    return ShaderError(raw, std::move(diagnostics));
}

} // namespace tarnwick
