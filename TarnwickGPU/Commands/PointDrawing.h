// Draws points by the PointWay of the pipeline.
#pragma once

#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/VertexDescriptor.h"

#include <cstdint>

namespace tarnwick::gpu {

// Draws with the bound render pipeline, whose way is not asGiven.
void drawPoints(CommandBufferParts& parts, std::uint32_t vertexStart, std::uint32_t vertexCount,
                std::uint32_t instanceCount);

// The same with indices. Points are the device's own, however large they are.
void drawIndexedPoints(CommandBufferParts& parts, std::uint32_t indexCount, IndexType indexType,
                       const Buffer& indices, std::size_t offset, std::uint32_t instanceCount,
                       std::int32_t baseVertex);

} // namespace tarnwick::gpu
