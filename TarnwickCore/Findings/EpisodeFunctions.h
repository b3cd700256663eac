// The functions that each kind of episode defines for the host to call, and messages about them.
#pragma once

#include "TarnwickCore/Finding.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// What an episode of the kind of `shader` defines: "a particle episode defines:", and the
// signatures, a line each.
std::string definitionsOf(const AssembledShader& shader);

// `diagnostics` of `source`, which was assembled to `shader`, with those about generated code said
// about the functions that the episode lacks or defines differently. Where the episode has errors
// of its own, those about generated code that follow from them are left out.
std::vector<Finding> aboutEpisodeFunctions(std::string_view source, const AssembledShader& shader,
                                           const std::vector<Diagnostic>& diagnostics);

} // namespace tarnwick
