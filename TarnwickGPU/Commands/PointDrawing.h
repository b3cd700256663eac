// Draws points by the PointWay of the pipeline.
#pragma once

#include "TarnwickGPU/Commands/CommandBufferParts.h"

#include <cstdint>

namespace tarnwick::gpu {

// Draws with the bound render pipeline, whose way is not asGiven.
void drawPoints(CommandBufferParts& parts, std::uint32_t vertexStart, std::uint32_t vertexCount,
                std::uint32_t instanceCount);

} // namespace tarnwick::gpu
