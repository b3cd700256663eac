// What the functions of a pipeline bind, as Vulkan's layouts and as a list that each draw walks.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <vulkan/vulkan.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick::gpu {

class Graveyard;
struct DeviceState;
struct TextureParts;

// The table of bound resources that a function looks in.
enum class TableIndex : std::uint8_t { vertexOrKernel, fragment };

// Of both stages of a pipeline.
inline constexpr std::size_t mostResources = 320;

struct BoundResource {
    msl::Resource resource;
    TableIndex table = TableIndex::vertexOrKernel;
    VkDescriptorType type = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    VkSampler sampler = VK_NULL_HANDLE; // of a sampler; bound by the draw, since the packaged CPU
                                        // driver loses immutable samplers in pushed sets
    std::optional<std::size_t> own;     // not a function's: CommandBufferParts::ownBuffers[own]
    const TextureParts* standIn = nullptr; // of a texture; null where null descriptors serve
};

// What a pipeline binds.
struct BindingNeeds {
    std::span<const msl::EntryPoint* const> functions;
    VkPushConstantRange pushConstants{}; // none of size 0
    // Storage buffers of the layer's own code, at the bindings from ownBinding() on.
    std::size_t ownBuffers = 0;
    // The stages that see everything; 0: each function's own.
    VkShaderStageFlags stages = 0;
};

// The first binding behind those of the functions.
std::uint32_t ownBinding(std::span<const msl::EntryPoint* const> functions);

struct BindingLayout {
    VkDescriptorSetLayout setLayout = VK_NULL_HANDLE;
    VkPipelineLayout pipelineLayout = VK_NULL_HANDLE;
    bool pushesDescriptors = false;
    bool writesMemory = false; // some function stores to a buffer or a texture
    bool reportsLoops = false; // some function counts its loops
    std::vector<BoundResource> resources;

    // Nothing when the device does not support the layout.
    static std::optional<BindingLayout> make(DeviceState& device, const BindingNeeds& needs);
    void bury(Graveyard& graveyard);
};

// A pipeline and the layout that it was made with.
struct PipelineWithLayout {
    BindingLayout layout;
    VkPipeline pipeline = VK_NULL_HANDLE; // null: none was made

    void bury(Graveyard& graveyard);
};

} // namespace tarnwick::gpu
