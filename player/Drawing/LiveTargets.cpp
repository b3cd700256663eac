#include "player/Drawing/LiveTargets.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr double longestWait = 1; // seconds, for a frame that only copies a picture

gpu::Viewport fitted(const gpu::Texture& picture, const gpu::Texture& target) {
    const double width = target.width(), height = target.height();
    const double scale = std::min(width / picture.width(), height / picture.height());
    const double drawnWidth = picture.width() * scale, drawnHeight = picture.height() * scale;
    return {.originX = (width - drawnWidth) / 2,
            .originY = (height - drawnHeight) / 2,
            .width = drawnWidth,
            .height = drawnHeight};
}

} // namespace

void LiveTargets::use(gpu::Device& device) {
    targets_.clear();
    copy_.reset();
    device_ = &device;
    copy_ = std::make_unique<OverlayQuad>(device, gpu::PixelFormat::bgra8Unorm);
}

void LiveTargets::add(int id, std::unique_ptr<FrameTarget> target, const PixelSize& size) {
    target->resize(size);
    targets_.insert_or_assign(id, Target{std::move(target), size});
}

void LiveTargets::resize(int id, const PixelSize& size) {
    const auto found = targets_.find(id);
    if (found == targets_.end() || found->second.size == size)
        return;
    found->second.size = size;
    found->second.target->resize(size);
    found->second.isStale = true;
}

void LiveTargets::expose(int id) {
    if (const auto found = targets_.find(id); found != targets_.end())
        found->second.isStale = true;
}

bool LiveTargets::areStale() const {
    return std::ranges::any_of(targets_, [](const auto& entry) { return entry.second.isStale; });
}

void LiveTargets::present(const gpu::Texture* picture, gpu::CommandQueue& queue) {
    if (!copy_ && device_ != nullptr)
        copy_ = std::make_unique<OverlayQuad>(*device_, gpu::PixelFormat::bgra8Unorm);
    for (auto& [id, target] : targets_)
        present(target, picture, queue);
}

void LiveTargets::present(Target& target, const gpu::Texture* picture,
                          gpu::CommandQueue& queue) const {
    target.isStale = false;
    const gpu::Texture* texture = target.target->nextTexture();
    auto commands = texture != nullptr ? queue.commandBuffer() : std::nullopt;
    auto encoder = commands ? commands->renderCommandEncoder(
                                  {.color = {.texture = texture, .load = gpu::LoadAction::clear}})
                            : std::nullopt;
    if (!encoder)
        return;
    if (picture != nullptr) {
        encoder->setViewport(fitted(*picture, *texture));
        copy_->draw(*encoder, *picture);
    }
    encoder->endEncoding();
    target.target->present(std::move(*commands));
    target.target->waitForRoom(longestWait); // CPU devices present a frame after it is drawn
}

} // namespace tarnwick::player
