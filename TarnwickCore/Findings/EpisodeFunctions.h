// The functions that each kind of episode defines for the host to call, and messages about them.
#pragma once

#include "TarnwickCore/Finding.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The functions of an episode of the kind of `shader`: "a particle episode defines:", then the
// signatures, one per line.
std::string definitionsOf(const AssembledShader& shader);

// The findings for `diagnostics` of `source`, which was assembled to `shader`. Errors in generated
// code become errors about functions that the episode does not define or defines differently. They
// are omitted if they follow from errors in the episode's own text.
std::vector<Finding> aboutEpisodeFunctions(std::string_view source, const AssembledShader& shader,
                                           const std::vector<Diagnostic>& diagnostics);

} // namespace tarnwick
