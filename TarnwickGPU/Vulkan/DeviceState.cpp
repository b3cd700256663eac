#include "TarnwickGPU/Vulkan/DeviceState.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick::gpu {

namespace {

// The packaged CPU driver ends an invocation silently after 65,535 loop iterations; the shader's
// own count must come first. A GPU must be done before its driver gives the device up, some seconds
// after the job began: when each of two million pixels spins that long, a small integrated GPU of
// about 2e11 such turns a second is at it for 2.5 seconds.
constexpr std::uint32_t cpuLoopBudget = 60'000;
constexpr std::uint32_t gpuLoopBudget = 250'000;

constexpr std::uint32_t mostQueues = 2; // one a lane

bool openDevice(DeviceState& state) {
    FeatureChain chain(optionalRecords(state.physical));
    std::vector<const char*> extensions;
    state.features =
        chooseFeatures(state.physical, state.instance->presentsOnXlib, chain, extensions);
    constexpr std::array<float, mostQueues> priorities{1, 1};
    const VkDeviceQueueCreateInfo queue{.sType = VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO,
                                        .queueFamilyIndex = state.queueFamily,
                                        .queueCount = state.queueCount,
                                        .pQueuePriorities = priorities.data()};
    const VkDeviceCreateInfo info{.sType = VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO,
                                  .pNext = &chain.core,
                                  .queueCreateInfoCount = 1,
                                  .pQueueCreateInfos = &queue,
                                  .enabledExtensionCount =
                                      static_cast<std::uint32_t>(extensions.size()),
                                  .ppEnabledExtensionNames = extensions.data()};
    return vkCreateDevice(state.physical, &info, nullptr, &state.handle) == VK_SUCCESS;
}

void readProperties(DeviceState& state) {
    VkPhysicalDeviceVulkan11Properties vulkan11{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_1_PROPERTIES};
    VkPhysicalDeviceVulkan13Properties vulkan13{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_PROPERTIES, .pNext = &vulkan11};
    VkPhysicalDeviceProperties2 properties{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2,
                                           .pNext = &vulkan13};
    vkGetPhysicalDeviceProperties2(state.physical, &properties);
    vkGetPhysicalDeviceMemoryProperties(state.physical, &state.memory);
    state.limits = properties.properties.limits;
    state.maxBufferSize = vulkan13.maxBufferSize;
    const bool clips = vulkan11.pointClippingBehavior == VK_POINT_CLIPPING_BEHAVIOR_ALL_CLIP_PLANES;
    state.points = {.largest = state.features.largePoints ? state.limits.pointSizeRange[1] : 1,
                    .dropsOutside = clips && !state.info.isCPU,
                    .splats = state.info.isCPU && state.features.sums};
    state.loopBudget = state.info.isCPU ? cpuLoopBudget : gpuLoopBudget;
    if (state.features.maxPushDescriptors > 0)
        state.pushDescriptorSet = reinterpret_cast<PFN_vkCmdPushDescriptorSetKHR>(
            vkGetDeviceProcAddr(state.handle, "vkCmdPushDescriptorSetKHR"));
}

} // namespace

std::shared_ptr<DeviceState> DeviceState::make(std::shared_ptr<Instance> instance,
                                               const PhysicalDevice& chosen) {
    auto state = std::make_shared<DeviceState>();
    state->instance = std::move(instance);
    state->physical = chosen.handle;
    state->queueFamily = chosen.queueFamily;
    state->queueCount = std::min(chosen.queueCount, mostQueues);
    state->info = chosen.info;
    if (!openDevice(*state))
        return nullptr;
    readProperties(*state);
    state->pipelineCache.open(*state);
    if (!state->submissions.start(state->handle, state->queueFamily, state->queueCount) ||
        !state->standIns.start(*state))
        return nullptr;
    return state;
}

DeviceState::~DeviceState() {
    if (!handle)
        return;
    vkDeviceWaitIdle(handle);
    pointSums.stop();
    standIns.stop(*this);
    transfers.stop(*this);
    graveyard.collect(handle, UINT64_MAX);
    samplers.stop(handle);
    pipelineCache.close(*this);
    submissions.stop();
    vkDestroyDevice(handle, nullptr);
}

} // namespace tarnwick::gpu
