// Small jobs of the layer itself on the GPU: clearing, uploads and read-backs. Each is submitted at
// once. Any thread; one job at a time.
#pragma once

#include "TarnwickGPU/Resources/Memory.h"

#include <vulkan/vulkan.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace tarnwick::gpu {

class Graveyard;
class Submissions;

class Transfers {
  public:
    using Record = std::function<void(VkCommandBuffer)>;
    using RecordStaged = std::function<void(VkCommandBuffer, VkBuffer)>;
    using Bytes = std::function<void(std::byte*)>;

    Transfers(const DeviceRecord& device, Submissions& submissions, Graveyard& graveyard)
        : device_(device), submissions_(submissions), graveyard_(graveyard) {}

    // Later submissions see the job's stores. False if memory is exhausted or the device is lost.
    bool run(const Record& record);

    // `fill` writes `size` bytes of staging memory, from which the job copies. An upload of up to
    // 64 KiB has staging memory of its own and does not wait for the GPU while fewer than 32 jobs
    // are in flight. Larger ones wait for the last copy.
    bool upload(VkDeviceSize size, const Bytes& fill, const RecordStaged& record);
    // The job copies `size` bytes into staging memory, which `take` reads. Blocks for the GPU.
    bool readBack(VkDeviceSize size, const RecordStaged& record, const Bytes& take);

    void stop(); // the GPU is idle

  private:
    struct Slot {
        VkCommandBuffer commands = VK_NULL_HANDLE;
        std::uint64_t submission = 0;
        BufferMemory staging; // smallUpload bytes, made when first needed
    };

    static constexpr VkDeviceSize smallUpload = 65536;

    Slot* freeSlot();
    std::optional<std::uint64_t> submit(const Record& record, Slot* slot);
    bool uploadSmall(const Bytes& fill, const RecordStaged& record);
    bool makeStaging(VkDeviceSize size);

    const DeviceRecord& device_;
    Submissions& submissions_;
    Graveyard& graveyard_;
    std::mutex mutex_;
    VkCommandPool pool_ = VK_NULL_HANDLE;
    std::vector<Slot> slots_;
    BufferMemory staging_;
    std::uint64_t stagingUse_ = 0; // the submission that last copied from staging_
};

} // namespace tarnwick::gpu
