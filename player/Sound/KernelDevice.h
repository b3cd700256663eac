// The device that computes the sound of episodes beside the picture.
#pragma once

#include "TarnwickGPU/Device.h"

#include <memory>
#include <mutex>

namespace tarnwick::player {

// On a device with two Vulkan queues the device of the pictures itself. On others each kernel would
// wait for the frame that is drawn, so that the hardware is opened a second time. A CPU driver
// computes both at the same time then; a GPU shares its time as its driver decides.
//
// Any thread.
class KernelDevice {
  public:
    explicit KernelDevice(std::shared_ptr<gpu::Device> pictures);

    // Opens the second device at the first call, and again after it was lost. Null if it cannot be
    // opened. Blocks.
    std::shared_ptr<gpu::Device> device();
    const std::shared_ptr<gpu::Device>& pictures() const { return pictures_; }

  private:
    std::shared_ptr<gpu::Device> pictures_;
    std::mutex mutex_;
    std::shared_ptr<gpu::Device> second_; // guarded by the mutex; null: not opened
};

} // namespace tarnwick::player
