// The resources that the functions of a pipeline bind, as Vulkan's layouts and as a list for draws.
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

// The ResourceTable of a function.
enum class TableIndex : std::uint8_t { vertexOrKernel, fragment };

// Resources of both stages of a pipeline.
inline constexpr std::size_t mostResources = 320;

struct BoundResource {
    msl::Resource resource;
    TableIndex table = TableIndex::vertexOrKernel;
    VkDescriptorType type = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    // Of a sampler. The draw binds it, since the packaged CPU driver loses immutable samplers in
    // pushed sets.
    VkSampler sampler = VK_NULL_HANDLE;
    // Of the layer's own code: the index in CommandBufferParts::ownBuffers.
    std::optional<std::size_t> own;
    const TextureParts* standIn = nullptr; // of a texture, if the device has no null descriptors
    // Of a member of an argument buffer: its place. Of bufferAddresses: all pointers in them.
    std::vector<msl::ArgumentMember> members;
};

// The resources of a pipeline.
struct BindingNeeds {
    std::span<const msl::EntryPoint* const> functions;
    VkPushConstantRange pushConstants{}; // size 0: none
    // Storage buffers of the layer's own code, at ownBinding() and the bindings after it.
    std::size_t ownBuffers = 0;
    // The stages that see every resource; 0: each function sees its own.
    VkShaderStageFlags stages = 0;
};

// The first binding after those of the functions.
std::uint32_t ownBinding(std::span<const msl::EntryPoint* const> functions);

struct BindingLayout {
    VkDescriptorSetLayout setLayout = VK_NULL_HANDLE;
    VkPipelineLayout pipelineLayout = VK_NULL_HANDLE;
    bool pushesDescriptors = false;
    bool writesMemory = false; // a function stores to a buffer or a texture
    bool reportsLoops = false; // a function counts its loop iterations
    std::uint32_t colorInputs =
        0; // bit n: the fragment function takes the colour so far of color(n)
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
