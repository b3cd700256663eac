// The Vulkan side of layers and drawables.
#pragma once

#include "TarnwickGPU/Layer.h"
#include "TarnwickGPU/Vulkan/DeviceState.h"
#include "TarnwickGPU/Vulkan/TextureParts.h"

#include <vulkan/vulkan.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::gpu {

// One image of the swapchain.
struct DrawableSlot {
    LayerParts* layer = nullptr;
    std::uint32_t index = 0; // in the swapchain
    std::unique_ptr<Texture> texture;
    VkSemaphore presentable = VK_NULL_HANDLE; // signalled by the submission that presents it
    std::size_t frame = 0;         // while acquired: the one of the layer's semaphores that says so
    bool acquireIsPending = false; // nothing has waited for `acquired` yet
    bool isDrawn = false;          // has contents
    bool isShown = false;          // a command buffer presents it
    std::uint64_t lastSubmission = 0; // that used the image
};

inline constexpr std::size_t framesInFlight = 3;

struct LayerParts {
    explicit LayerParts(std::shared_ptr<DeviceState> state) : device(std::move(state)) {}
    ~LayerParts();
    LayerParts(const LayerParts&) = delete;
    LayerParts& operator=(const LayerParts&) = delete;

    std::shared_ptr<DeviceState> device;
    VkSurfaceKHR surface = VK_NULL_HANDLE;
    VkSwapchainKHR swapchain = VK_NULL_HANDLE;
    std::vector<std::unique_ptr<DrawableSlot>> slots;
    std::array<VkSemaphore, framesInFlight> acquired{};      // signalled by the swapchain
    std::array<std::uint64_t, framesInFlight> submissions{}; // the last that used each of them
    std::size_t frame = 0;                                   // the next
    VkExtent2D wanted{};                                     // what resize() asked for
    DrawableSlot* returned = nullptr;                        // acquired, and dropped unshown
    bool isStale = true;                                     // the swapchain is to be made anew
    bool isGone = false;                                     // the window or its surface
};

// Presents what was submitted last with the slot.
void show(DrawableSlot& slot);
// The slot was not presented after all: the next drawable is it again.
void giveBack(DrawableSlot& slot);

// Null when the display or the window is not of this driver's kind.
VkSurfaceKHR makeXlibSurface(VkInstance instance, void* display, unsigned long window);

} // namespace tarnwick::gpu
