// The error of compiling an episode.
#pragma once

#include "TarnwickCore/Diagnostics.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct ShaderError : std::runtime_error {
    // what() is `raw` unchanged.
    explicit ShaderError(const std::string& raw, std::vector<Diagnostic> diagnostics = {})
        : std::runtime_error(raw), diagnostics(std::move(diagnostics)), raw(raw) {}

    std::vector<Diagnostic> diagnostics; // empty unless the compiler rejects the text
    std::string raw;                     // the compiler's whole text, or a sentence
};

enum class Fault : std::uint8_t {
    ofEpisode,
    ofCompiler // it crashed or ran out of time
};

// The error of a program that the compiler rejected with `compilerText`. If a particle or grid
// episode seems to lack a function, a note lists the functions of its kind.
ShaderError compilerError(const AssembledShader& shader, std::string_view compilerText,
                          Fault fault = Fault::ofEpisode);

} // namespace tarnwick
