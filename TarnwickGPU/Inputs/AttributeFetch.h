// Makes the functions that give the attributes of kernels and patch functions. The compiler leaves
// them empty (msl::StageAttribute::fetch), because the formats belong to the pipeline.
#pragma once

#include "TarnwickGPU/VertexDescriptor.h"
#include "TarnwickMSL/EntryPoint.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick::gpu {

// The indices of the indexed step functions and of control points.
struct IndexSource {
    IndexType type = IndexType::uint16;
    std::uint32_t buffer = 0; // in the ResourceTable
};

struct FetchNeeds {
    const VertexDescriptor& buffers; // without a fault (AttributeFaults.h)
    std::optional<IndexSource> indices;
    std::uint32_t binding = 0; // the first of the buffers that the functions read
};

// The entry point with the functions, and with the buffers that they read as resources.
std::shared_ptr<const msl::EntryPoint> withFetches(const msl::EntryPoint& function,
                                                   const FetchNeeds& needs);

} // namespace tarnwick::gpu
