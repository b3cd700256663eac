// The stages before a post-tessellation vertex function, which Metal does not have: they read the
// factors of a patch from a buffer.
//
// A patch has one control point in Vulkan, whose vertex number is the number of the patch. The
// patch function reads the control points of the program itself (AttributeFetch.h), so their count
// is not part of the pipeline.
#pragma once

#include "TarnwickGPU/Pipeline.h"
#include "TarnwickSpirv/Instruction.h"

#include <cstdint>

namespace tarnwick::gpu {

// The push constants of the control stage.
struct PatchRecord {
    std::uint32_t start = 0;          // the number of the draw's first patch
    std::uint32_t controlPoints = 0;  // of each patch
    std::uint32_t baseInstance = 0;   // of the draw
    std::uint32_t instanceStride = 0; // bytes between the factors of two instances
    float scale = 1;                  // of the factors
};

struct PatchNeeds {
    msl::PatchKind kind = msl::PatchKind::triangle;
    const TessellationDescriptor& tessellation;
    std::uint32_t factorsBinding = 0;
};

// SPIR-V. The vertex stage passes the numbers of the patch and the instance on.
spirv::Words patchVertexStage();
// Sets the levels, and the input of a patch function (msl::EntryPoint::patch).
spirv::Words patchControlStage(const PatchNeeds& needs);

} // namespace tarnwick::gpu
