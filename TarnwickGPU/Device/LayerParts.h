// The Vulkan side of layers and drawables: a window's surface and its swapchain.
// XlibSurface.cpp makes the surface, apart from the rest because Xlib's header defines macros such
// as None and Status.
#pragma once

#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Resources.h"

#include <vulkan/vulkan.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace tarnwick::gpu {

struct LayerParts;

// One image of the swapchain.
struct DrawableSlot {
    LayerParts* layer = nullptr;
    std::uint32_t index = 0; // in the swapchain
    std::unique_ptr<Texture> texture;
    VkSemaphore presentable = VK_NULL_HANDLE; // signalled by the submission that presents it
    std::size_t frame = 0; // while acquired: the index of its semaphore in LayerParts::acquired
    bool acquireIsPending = false;    // no submission waits for that semaphore yet
    bool isDrawn = false;             // has contents
    bool isShown = false;             // a command buffer presents it
    std::uint64_t lastSubmission = 0; // that used the image
};

inline constexpr std::size_t framesInFlight = 3;

struct LayerParts {
    explicit LayerParts(std::shared_ptr<DeviceState> state) : device(std::move(state)) {}
    ~LayerParts(); // waits for the frames in flight
    LayerParts(const LayerParts&) = delete;
    LayerParts& operator=(const LayerParts&) = delete;

    // Makes the semaphores. False if the device cannot present on `surface`.
    bool canStart();
    // The next image to draw into. Null when the window is hidden or gone, or the device is lost.
    DrawableSlot* nextSlot();

    std::shared_ptr<DeviceState> device;
    VkSurfaceKHR surface = VK_NULL_HANDLE;
    bool ownsSurface = false; // destroys it
    VkSwapchainKHR swapchain = VK_NULL_HANDLE;
    std::vector<std::unique_ptr<DrawableSlot>> slots;
    std::array<VkSemaphore, framesInFlight> acquired{};      // signalled by the swapchain
    std::array<std::uint64_t, framesInFlight> submissions{}; // the last that used each semaphore
    std::size_t frame = 0;                                   // the next index in both
    VkExtent2D wanted{};                                     // pixels, from Layer::resize()
    DrawableSlot* returned = nullptr;                        // acquired, and dropped unshown
    bool isStale = true;                                     // a new swapchain must be made
    bool isGone = false;                                     // the window or its surface
};

// Presents the slot after the submission that last used it.
void show(DrawableSlot& slot);
// The slot is not presented: the layer's next drawable is this slot again.
void giveBack(DrawableSlot& slot);

// Null when the driver has no surfaces for the display or the window.
VkSurfaceKHR makeXlibSurface(VkInstance instance, void* display, unsigned long window);

} // namespace tarnwick::gpu
