#include "TarnwickGPU/Device/DeviceState.h"

#include "TarnwickGPU/Vulkan/PhysicalDevices.h"

#include <utility>

namespace tarnwick::gpu {

std::shared_ptr<DeviceState> DeviceState::make(std::shared_ptr<Instance> instance,
                                               const PhysicalDevice& chosen) {
    auto state = std::make_shared<DeviceState>();
    state->instance = std::move(instance);
    DeviceRecord& record = state->record;
    record = openDevice(chosen, state->instance->presents);
    if (!record.handle)
        return nullptr;
    state->pipelineCache.open();
    if (!state->submissions.start(record.handle, record.queueFamily, record.queueCount) ||
        !state->standIns.start())
        return nullptr;
    return state;
}

DeviceState::~DeviceState() {
    if (!record.handle)
        return;
    submissions.finish();
    vkDeviceWaitIdle(record.handle);
    pointSums.stop();
    standIns.stop();
    transfers.stop();
    graveyard.destroyAll();
    samplers.stop();
    pipelineCache.close();
    submissions.stop();
    vkDestroyDevice(record.handle, nullptr);
}

} // namespace tarnwick::gpu
