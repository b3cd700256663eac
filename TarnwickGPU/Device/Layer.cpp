#include "TarnwickGPU/Layer.h"

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Device/LayerParts.h"

#include <utility>

namespace tarnwick::gpu {

Drawable::~Drawable() {
    if (slot_ && !slot_->isShown)
        giveBack(*slot_);
}

Drawable::Drawable(Drawable&& other) noexcept : slot_(std::exchange(other.slot_, nullptr)) {}

Drawable& Drawable::operator=(Drawable&& other) noexcept {
    std::swap(slot_, other.slot_);
    return *this;
}

const Texture& Drawable::texture() const {
    return *slot_->texture;
}

Layer::Layer(std::unique_ptr<LayerParts> parts) : parts_(std::move(parts)) {}
Layer::~Layer() = default;

void Layer::resize(std::uint32_t width, std::uint32_t height) {
    const VkExtent2D wanted{width, height};
    parts_->isStale |=
        wanted.width != parts_->wanted.width || wanted.height != parts_->wanted.height;
    parts_->wanted = wanted;
}

std::optional<Drawable> Layer::nextDrawable() {
    if (parts_->isGone || parts_->device->submissions.isLost())
        return std::nullopt;
    DrawableSlot* slot = parts_->nextSlot();
    if (!slot)
        return std::nullopt;
    slot->isDrawn = false;
    slot->isShown = false;
    return Drawable(*slot);
}

std::unique_ptr<Layer> Device::newLayer(void* display, unsigned long window) {
    if (isLost() || !state_->record.features.presents)
        return nullptr;
    auto parts = std::make_unique<LayerParts>(state_);
    parts->surface = makeXlibSurface(state_->instance->handle, display, window);
    parts->ownsSurface = true;
    return parts->canStart() ? std::make_unique<Layer>(std::move(parts)) : nullptr;
}

std::unique_ptr<Layer> Device::newLayer(void* surface) {
    if (isLost() || !state_->record.features.presents)
        return nullptr;
    auto parts = std::make_unique<LayerParts>(state_);
    parts->surface = static_cast<VkSurfaceKHR>(surface);
    return parts->canStart() ? std::make_unique<Layer>(std::move(parts)) : nullptr;
}

void* Device::vulkanInstance() const {
    return state_->instance->handle;
}

} // namespace tarnwick::gpu
