// Writes the records of a command stream as Vulkan's commands.
#pragma once

#include "TarnwickGPU/Commands/CommandStream.h"
#include "TarnwickGPU/Vulkan/DeviceRecord.h"

namespace tarnwick::gpu {

struct CommandTarget {
    const DeviceRecord& device;
    VkCommandBuffer handle;
    const CommandStream& stream;
};

void record(const CommandTarget& target, const Command& command);
// All commands of the stream.
void recordAll(const CommandTarget& target);

// Begins rendering. `goesOn`: with the contents so far instead of the load action, and the samples
// are not resolved.
enum class RenderingStart : std::uint8_t { first, goesOn };
void beginRendering(const CommandTarget& target, const RenderingRecord& rendering,
                    RenderingStart start);
// Resolves the samples of a rendering that has ended.
void resolve(const CommandTarget& target, const RenderingRecord& rendering);
bool resolves(const RenderingRecord& rendering);

} // namespace tarnwick::gpu
