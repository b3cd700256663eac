// Whether a device computes while it draws.
#pragma once

namespace tarnwick::gpu {

class Device;

// Whether queues of QueueUse::beside run in parallel to those of pictures: the device has two
// Vulkan queues. A second Device of the same hardware has queues of its own in any case. Any
// thread.
bool hasQueueBeside(const Device& device);

} // namespace tarnwick::gpu
