#include "TarnwickGPU/Vulkan/PointSums.h"

#include "TarnwickGPU/Vulkan/DeviceState.h"

#include <cstring>

namespace tarnwick::gpu {

std::shared_ptr<PointSums> PointSumsKeeper::sums(DeviceState& device, VkDeviceSize bytes) {
    if (bytes > device.limits.maxStorageBufferRange)
        return nullptr;
    std::lock_guard lock(mutex_);
    if (sums_ && sums_->memory.size >= bytes)
        return sums_;
    const auto made = makeBufferMemory(device, bytes, MemoryUse::upload);
    if (!made)
        return nullptr;
    std::memset(made->bytes, 0, made->size);
    sums_ = std::make_shared<PointSums>(device, *made);
    return sums_;
}

} // namespace tarnwick::gpu
