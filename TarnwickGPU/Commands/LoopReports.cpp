#include "TarnwickGPU/Commands/LoopReports.h"

#include <algorithm>
#include <cstring>

namespace tarnwick::gpu {

namespace {

constexpr std::uint32_t wordCount = 64;

} // namespace

bool LoopReports::make(const DeviceRecord& device) {
    stride_ = std::max(device.limits.minStorageBufferOffsetAlignment, VkDeviceSize{4});
    const auto made = makeBufferMemory(device, stride_ * wordCount, MemoryUse::readBack);
    if (!made)
        return false;
    memory_ = *made;
    std::memset(memory_.bytes, 0, memory_.size);
    return true;
}

void LoopReports::reset() {
    const std::uint32_t used = std::min(taken_, wordCount);
    for (std::uint32_t word = 0; word < used; ++word)
        std::memset(memory_.bytes + word * stride_, 0, sizeof(std::uint32_t));
    taken_ = 0;
}

void LoopReports::bury(Graveyard& graveyard) {
    gpu::bury(graveyard, memory_);
}

VkDescriptorBufferInfo LoopReports::next() {
    return {memory_.buffer, (taken_++ % wordCount) * stride_, sizeof(std::uint32_t)};
}

bool LoopReports::anyIsSet() const {
    const std::uint32_t used = std::min(taken_, wordCount);
    for (std::uint32_t word = 0; word < used; ++word) {
        std::uint32_t value = 0;
        std::memcpy(&value, memory_.bytes + word * stride_, sizeof value);
        if (value != 0)
            return true;
    }
    return false;
}

} // namespace tarnwick::gpu
