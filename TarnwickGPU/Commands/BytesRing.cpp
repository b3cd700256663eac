#include "TarnwickGPU/Commands/BytesRing.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

// A frame of an ordinary program needs a few hundred bytes, the first frame of a particle program
// 0.3 MB.
constexpr VkDeviceSize chunkBytes = 65536;

VkDeviceSize alignment(const VkPhysicalDeviceLimits& limits) {
    return std::max({limits.minUniformBufferOffsetAlignment, limits.minStorageBufferOffsetAlignment,
                     VkDeviceSize{16}});
}

} // namespace

BytesRing::Slice BytesRing::take(const DeviceRecord& device, VkDeviceSize size) {
    const VkDeviceSize step = alignment(device.limits);
    const VkDeviceSize needed = (size + step - 1) / step * step;
    if (chunk_ < chunks_.size() && used_ + needed > chunks_[chunk_].size) {
        ++chunk_;
        used_ = 0;
    }
    if (chunk_ == chunks_.size()) {
        auto made = makeBufferMemory(device, std::max(chunkBytes, needed), MemoryUse::upload);
        if (!made)
            return {};
        chunks_.push_back(*made);
    }
    const BufferMemory& chunk = chunks_[chunk_];
    const Slice slice{chunk.buffer, used_, chunk.bytes + used_,
                      chunk.address ? chunk.address + used_ : 0};
    used_ += needed;
    return slice;
}

void BytesRing::reset() {
    chunk_ = 0;
    used_ = 0;
}

void BytesRing::bury(Graveyard& graveyard) {
    for (BufferMemory& chunk : chunks_)
        gpu::bury(graveyard, chunk);
    chunks_.clear();
    reset();
}

} // namespace tarnwick::gpu
