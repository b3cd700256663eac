#include "TarnwickGPU/Commands/DescriptorSets.h"

#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/Graveyard.h"

#include <array>

namespace tarnwick::gpu {

namespace {

constexpr std::uint32_t setsPerPool = 64;

VkDescriptorPool makePool(const DeviceRecord& device) {
    constexpr std::array sizes{
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, setsPerPool * 8},
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_STORAGE_BUFFER, setsPerPool * 8},
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE, setsPerPool * 16},
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_STORAGE_IMAGE, setsPerPool * 4},
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER, setsPerPool * 2},
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER, setsPerPool * 2},
        VkDescriptorPoolSize{VK_DESCRIPTOR_TYPE_SAMPLER, setsPerPool * 8}};
    const VkDescriptorPoolCreateInfo info{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO,
                                          .maxSets = setsPerPool,
                                          .poolSizeCount = sizes.size(),
                                          .pPoolSizes = sizes.data()};
    VkDescriptorPool pool = VK_NULL_HANDLE;
    if (vkCreateDescriptorPool(device.handle, &info, nullptr, &pool) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return pool;
}

VkDescriptorSet allocate(const DeviceRecord& device, VkDescriptorPool pool,
                         VkDescriptorSetLayout layout) {
    const VkDescriptorSetAllocateInfo info{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO,
                                           .descriptorPool = pool,
                                           .descriptorSetCount = 1,
                                           .pSetLayouts = &layout};
    VkDescriptorSet set = VK_NULL_HANDLE;
    if (vkAllocateDescriptorSets(device.handle, &info, &set) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return set;
}

} // namespace

VkDescriptorSet DescriptorSets::take(const DeviceRecord& device, VkDescriptorSetLayout layout) {
    for (; pool_ < pools_.size(); ++pool_)
        if (VkDescriptorSet set = allocate(device, pools_[pool_], layout))
            return set;
    const VkDescriptorPool made = makePool(device);
    if (!made)
        return VK_NULL_HANDLE;
    pools_.push_back(made);
    return allocate(device, made, layout);
}

void DescriptorSets::reset(const DeviceRecord& device) {
    for (VkDescriptorPool pool : pools_)
        vkResetDescriptorPool(device.handle, pool, 0);
    pool_ = 0;
}

void DescriptorSets::bury(Graveyard& graveyard) {
    for (VkDescriptorPool pool : pools_)
        graveyard.bury(pool);
    pools_.clear();
    pool_ = 0;
}

} // namespace tarnwick::gpu
