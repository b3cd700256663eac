// What a fragment function works out anew at every pixel of a point, though it is the same at all
// of them: what follows from the vertex function's outputs and from read-only buffers alone.
#pragma once

#include "TarnwickSpirv/Module.h"

#include <optional>
#include <vector>

namespace tarnwick::gpu {

struct PointConstants {
    spirv::Id function = 0; // works them out, once the inputs are there
    std::vector<spirv::Id>
        variables; // private ones of the module: what it leaves there main() reads
};

// Parts a fragment function in two. Nothing, and the code as it was, where that saves no load, or
// where more would pass from the one to the other than a few inputs.
std::optional<PointConstants> partConstants(spirv::Module& fragment);

} // namespace tarnwick::gpu
