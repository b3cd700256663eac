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

struct DeviceState;

// The table of bound resources that a function looks in.
enum class TableIndex : std::uint8_t { vertexOrKernel, fragment };

// Both stages' buffers and textures, 31 each, their loop reports and their samplers.
inline constexpr std::size_t mostResources = 160;

struct BoundResource {
    msl::Resource resource;
    TableIndex table = TableIndex::vertexOrKernel;
    VkDescriptorType type = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    VkSampler sampler = VK_NULL_HANDLE; // of a sampler; bound by the draw, since the packaged CPU
                                        // driver loses immutable samplers in pushed sets
};

struct BindingLayout {
    VkDescriptorSetLayout setLayout = VK_NULL_HANDLE;
    VkPipelineLayout pipelineLayout = VK_NULL_HANDLE;
    bool pushesDescriptors = false;
    bool writesMemory = false; // some function stores to a buffer or a texture
    bool reportsLoops = false; // some function counts its loops
    std::vector<BoundResource> resources;

    // Nothing when the device takes no such layout.
    static std::optional<BindingLayout> make(DeviceState& device,
                                             std::span<const msl::EntryPoint* const> functions);
    void bury(DeviceState& device);
};

} // namespace tarnwick::gpu
