#include "TarnwickWeb/WebProgram.h"

#include "TarnwickMSL/Compile.h"
#include "TarnwickWeb/WebError.h"

#include <algorithm>

namespace tarnwick {
namespace {

using Names = ShaderAssembler;

std::uint32_t particleBytesOf(const msl::Reflection& reflection) {
    const auto spawn =
        std::ranges::find(reflection.entries, Names::spawnName, &msl::ReflectedEntry::name);
    if (spawn == reflection.entries.end())
        return 0;
    const auto particles =
        std::ranges::find_if(spawn->arguments, [](const msl::ReflectedArgument& argument) {
            return argument.table == msl::ArgumentTable::buffer && argument.index == 0;
        });
    return particles == spawn->arguments.end() ? 0 : particles->type.bytes;
}

std::string firstError(const msl::Compilation& compiled) {
    const auto error =
        std::ranges::find(compiled.diagnostics, msl::DiagnosticKind::error, &msl::Diagnostic::kind);
    return error == compiled.diagnostics.end() ? compiled.messages : error->text;
}

} // namespace

WebProgram WebProgram::make(const Episode& episode) {
    msl::CompileOptions options;
    options.target = msl::wgslTarget();
    options.reflects = true;
    msl::Compilation compiled = msl::compile(episode.shader.source, options);
    if (compiled.failed)
        throw WebError(episode.path + " cannot be a page: " + firstError(compiled));
    WebProgram program;
    if (episode.shader.isParticles()) {
        program.particleBytes = particleBytesOf(compiled.reflection);
        if (program.particleBytes == 0)
            throw WebError(episode.path + " cannot be a page: its struct Particle has no size.");
    }
    for (msl::EntryPoint& function : compiled.entryPoints)
        if (function.name != Names::particleSizeName)
            program.functions.push_back(std::move(function));
    return program;
}

const msl::EntryPoint* WebProgram::functionNamed(std::string_view name) const {
    const auto found = std::ranges::find(functions, name, &msl::EntryPoint::name);
    return found == functions.end() ? nullptr : &*found;
}

} // namespace tarnwick
