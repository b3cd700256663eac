#include "TarnwickGPU/Resources/PointSums.h"

#include <cstring>

namespace tarnwick::gpu {

std::shared_ptr<PointSums> PointSumsKeeper::sums(VkDeviceSize bytes) {
    if (bytes > device_.limits.maxStorageBufferRange)
        return nullptr;
    std::lock_guard lock(mutex_);
    if (sums_ && sums_->memory.size >= bytes)
        return sums_;
    const auto made = makeBufferMemory(device_, bytes, MemoryUse::upload);
    if (!made)
        return nullptr;
    std::memset(made->bytes, 0, made->size);
    sums_ = std::make_shared<PointSums>(graveyard_, *made);
    return sums_;
}

} // namespace tarnwick::gpu
