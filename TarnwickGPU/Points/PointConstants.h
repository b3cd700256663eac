// Finds the values of a fragment function that are the same at every pixel of a point: those
// computed only from the vertex function's outputs and from read-only buffers.
#pragma once

#include "TarnwickSpirv/Module.h"

#include <optional>
#include <vector>

namespace tarnwick::gpu {

struct PointConstants {
    spirv::Id function = 0;           // computes them from the inputs
    std::vector<spirv::Id> variables; // private; `function` stores them, main() reads them
};

// Splits a fragment function in two. Nothing, and the code unchanged, if that saves no load or
// needs more than 6 variables.
std::optional<PointConstants> partConstants(spirv::Module& fragment);

} // namespace tarnwick::gpu
