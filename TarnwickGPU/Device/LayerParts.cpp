#include "TarnwickGPU/Device/LayerParts.h"

#include "TarnwickGPU/Resources/TextureParts.h"

#include <algorithm>
#include <utility>

namespace tarnwick::gpu {

namespace {

constexpr VkFormat format = VK_FORMAT_B8G8R8A8_UNORM;
constexpr VkColorSpaceKHR colorSpace = VK_COLOR_SPACE_SRGB_NONLINEAR_KHR;
constexpr std::uint64_t longestAcquire = 1'000'000'000; // nanoseconds

VkSemaphore makeSemaphore(const DeviceRecord& device) {
    const VkSemaphoreCreateInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO};
    VkSemaphore semaphore = VK_NULL_HANDLE;
    if (vkCreateSemaphore(device.handle, &info, nullptr, &semaphore) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return semaphore;
}

bool canPresent(const DeviceRecord& device, VkSurfaceKHR surface) {
    VkBool32 isSupported = VK_FALSE;
    if (vkGetPhysicalDeviceSurfaceSupportKHR(device.physical, device.queueFamily, surface,
                                             &isSupported) != VK_SUCCESS ||
        !isSupported)
        return false;
    std::uint32_t count = 0;
    vkGetPhysicalDeviceSurfaceFormatsKHR(device.physical, surface, &count, nullptr);
    std::vector<VkSurfaceFormatKHR> formats(count);
    vkGetPhysicalDeviceSurfaceFormatsKHR(device.physical, surface, &count, formats.data());
    return std::any_of(formats.begin(), formats.end(), [](const VkSurfaceFormatKHR& one) {
        return one.format == format && one.colorSpace == colorSpace;
    });
}

// Notes the result of a call on the swapchain.
void heed(LayerParts& layer, VkResult result) {
    layer.device->submissions.note(result);
    if (result == VK_ERROR_OUT_OF_DATE_KHR || result == VK_SUBOPTIMAL_KHR)
        layer.isStale = true;
    else if (result < 0)
        layer.isGone = true;
}

VkExtent2D extentFor(const LayerParts& layer, const VkSurfaceCapabilitiesKHR& surface) {
    if (surface.currentExtent.width != UINT32_MAX)
        return surface.currentExtent;
    return {
        std::clamp(layer.wanted.width, surface.minImageExtent.width, surface.maxImageExtent.width),
        std::clamp(layer.wanted.height, surface.minImageExtent.height,
                   surface.maxImageExtent.height)};
}

// Where the swapchain gives the surface its size, that is on Wayland, FIFO makes presenting wait
// until the compositor shows the picture: for ever while the window is hidden. Mailbox does not.
VkPresentModeKHR presentMode(const LayerParts& layer, const VkSurfaceCapabilitiesKHR& surface) {
    if (surface.currentExtent.width != UINT32_MAX)
        return VK_PRESENT_MODE_FIFO_KHR;
    const VkPhysicalDevice device = layer.device->record.physical;
    std::uint32_t count = 0;
    vkGetPhysicalDeviceSurfacePresentModesKHR(device, layer.surface, &count, nullptr);
    std::vector<VkPresentModeKHR> modes(count);
    vkGetPhysicalDeviceSurfacePresentModesKHR(device, layer.surface, &count, modes.data());
    return std::ranges::find(modes, VK_PRESENT_MODE_MAILBOX_KHR) != modes.end()
               ? VK_PRESENT_MODE_MAILBOX_KHR
               : VK_PRESENT_MODE_FIFO_KHR;
}

VkSwapchainKHR makeSwapchain(LayerParts& layer, const VkSurfaceCapabilitiesKHR& surface,
                             VkExtent2D extent) {
    const std::uint32_t most = surface.maxImageCount > 0 ? surface.maxImageCount : UINT32_MAX;
    const VkSwapchainCreateInfoKHR info{
        .sType = VK_STRUCTURE_TYPE_SWAPCHAIN_CREATE_INFO_KHR,
        .surface = layer.surface,
        .minImageCount =
            std::min(std::max<std::uint32_t>(surface.minImageCount, framesInFlight), most),
        .imageFormat = format,
        .imageColorSpace = colorSpace,
        .imageExtent = extent,
        .imageArrayLayers = 1,
        .imageUsage = surface.supportedUsageFlags &
                      (VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT |
                       VK_IMAGE_USAGE_TRANSFER_DST_BIT),
        .preTransform = surface.currentTransform,
        .compositeAlpha = surface.supportedCompositeAlpha & VK_COMPOSITE_ALPHA_OPAQUE_BIT_KHR
                              ? VK_COMPOSITE_ALPHA_OPAQUE_BIT_KHR
                              : VK_COMPOSITE_ALPHA_INHERIT_BIT_KHR,
        .presentMode = presentMode(layer, surface),
        .clipped = VK_TRUE,
        .oldSwapchain = layer.swapchain};
    VkSwapchainKHR made = VK_NULL_HANDLE;
    const VkResult result =
        vkCreateSwapchainKHR(layer.device->record.handle, &info, nullptr, &made);
    if (result != VK_SUCCESS) {
        heed(layer, result);
        return VK_NULL_HANDLE;
    }
    return made;
}

TextureDescriptor pictureOf(VkExtent2D extent) {
    return {.format = PixelFormat::bgra8Unorm,
            .width = extent.width,
            .height = extent.height,
            .usage = {.shaderRead = false, .renderTarget = true},
            .storage = StorageMode::private_};
}

bool makeSlots(LayerParts& layer, VkExtent2D extent) {
    DeviceState& device = *layer.device;
    std::uint32_t count = 0;
    vkGetSwapchainImagesKHR(device.record.handle, layer.swapchain, &count, nullptr);
    std::vector<VkImage> images(count);
    vkGetSwapchainImagesKHR(device.record.handle, layer.swapchain, &count, images.data());
    for (std::uint32_t index = 0; index < count; ++index) {
        auto slot = std::make_unique<DrawableSlot>();
        slot->layer = &layer;
        slot->index = index;
        slot->presentable = makeSemaphore(device.record);
        auto texture =
            TextureParts::wrap(device.record, device.graveyard, device.transfers,
                               {.handle = images[index], .descriptor = pictureOf(extent)}, *slot);
        const bool isMade = slot->presentable && texture;
        if (texture)
            slot->texture = std::make_unique<Texture>(std::move(texture));
        layer.slots.push_back(std::move(slot));
        if (!isMade)
            return false;
    }
    return count > 0;
}

// Afterwards no frame of the layer is in flight, neither on the GPU nor in presentation.
void waitForFrames(LayerParts& layer) {
    for (std::uint64_t submission : layer.submissions)
        layer.device->submissions.wait(submission);
    layer.device->submissions.waitIdle();
}

// If no submission waited for an acquired image, its semaphore is still signalled.
void renewSemaphore(LayerParts& layer, const DrawableSlot& slot) {
    if (!slot.acquireIsPending)
        return;
    VkSemaphore& semaphore = layer.acquired[slot.frame];
    vkDestroySemaphore(layer.device->record.handle, semaphore, nullptr);
    semaphore = makeSemaphore(layer.device->record);
}

void dropSlots(LayerParts& layer) {
    DeviceState& device = *layer.device;
    for (auto& slot : layer.slots) {
        renewSemaphore(layer, *slot);
        vkDestroySemaphore(device.record.handle, slot->presentable, nullptr);
    }
    layer.slots.clear();
    layer.returned = nullptr;
    device.graveyard.collect(); // the images' views
}

bool remake(LayerParts& layer) {
    const DeviceRecord& device = layer.device->record;
    waitForFrames(layer);
    VkSurfaceCapabilitiesKHR surface;
    const VkResult result =
        vkGetPhysicalDeviceSurfaceCapabilitiesKHR(device.physical, layer.surface, &surface);
    if (result != VK_SUCCESS) {
        heed(layer, result);
        return false;
    }
    const VkExtent2D extent = extentFor(layer, surface);
    if (extent.width == 0 || extent.height == 0)
        return false; // the window is hidden
    const VkSwapchainKHR made = makeSwapchain(layer, surface, extent);
    dropSlots(layer);
    vkDestroySwapchainKHR(device.handle, layer.swapchain, nullptr);
    layer.swapchain = made;
    layer.isStale = !made || !makeSlots(layer, extent);
    return !layer.isStale;
}

DrawableSlot* acquire(LayerParts& layer) {
    DeviceState& device = *layer.device;
    if (!device.submissions.wait(layer.submissions[layer.frame]))
        return nullptr;
    std::uint32_t index = 0;
    const VkResult result =
        vkAcquireNextImageKHR(device.record.handle, layer.swapchain, longestAcquire,
                              layer.acquired[layer.frame], VK_NULL_HANDLE, &index);
    if (result != VK_SUCCESS)
        heed(layer, result);
    if (result != VK_SUCCESS && result != VK_SUBOPTIMAL_KHR)
        return nullptr;
    DrawableSlot& slot = *layer.slots[index];
    slot.frame = layer.frame;
    slot.acquireIsPending = true;
    layer.frame = (layer.frame + 1) % framesInFlight;
    return &slot;
}

} // namespace

bool LayerParts::canStart() {
    const DeviceRecord& record = device->record;
    if (!surface || !canPresent(record, surface))
        return false;
    for (VkSemaphore& semaphore : acquired)
        if (semaphore = makeSemaphore(record); !semaphore)
            return false;
    return true;
}

LayerParts::~LayerParts() {
    waitForFrames(*this);
    dropSlots(*this);
    const VkDevice handle = device->record.handle;
    for (VkSemaphore semaphore : acquired)
        vkDestroySemaphore(handle, semaphore, nullptr);
    vkDestroySwapchainKHR(handle, swapchain, nullptr);
    if (ownsSurface)
        vkDestroySurfaceKHR(device->instance->handle, surface, nullptr);
}

DrawableSlot* LayerParts::nextSlot() {
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (isStale && !remake(*this))
            return nullptr;
        if (returned)
            return std::exchange(returned, nullptr);
        DrawableSlot* slot = acquire(*this);
        if (slot || !isStale || isGone)
            return slot;
    }
    return nullptr;
}

void show(DrawableSlot& slot) {
    LayerParts& layer = *slot.layer;
    layer.submissions[slot.frame] = slot.lastSubmission;
    const VkPresentInfoKHR info{.sType = VK_STRUCTURE_TYPE_PRESENT_INFO_KHR,
                                .waitSemaphoreCount = 1,
                                .pWaitSemaphores = &slot.presentable,
                                .swapchainCount = 1,
                                .pSwapchains = &layer.swapchain,
                                .pImageIndices = &slot.index};
    const VkResult result = layer.device->submissions.present(info);
    if (result != VK_SUCCESS)
        heed(layer, result);
}

void giveBack(DrawableSlot& slot) {
    slot.isShown = false;
    slot.layer->returned = &slot;
}

} // namespace tarnwick::gpu
