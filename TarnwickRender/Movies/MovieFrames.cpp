#include "TarnwickRender/Movies/MovieFrames.h"

#include "TarnwickRender/ExportError.h"

#include <algorithm>
#include <stdexcept>

namespace tarnwick {
namespace {

[[noreturn]] void cannotStart(const char* reason) {
    throw ExportError(ExportError::Setup{reason});
}

template <typename Pipeline>
std::unique_ptr<Pipeline> made(gpu::Device& device, const char* otherwise) {
    try {
        return std::make_unique<Pipeline>(device, ShaderProgram::pixelFormat);
    } catch (const std::runtime_error&) {
        cannotStart(otherwise);
    }
}

std::unique_ptr<gpu::Texture> frameTexture(gpu::Device& device, const PixelSize& size) {
    auto texture = device.newTexture({.format = ShaderProgram::pixelFormat,
                                      .width = size.width,
                                      .height = size.height,
                                      .usage = {.shaderRead = true, .renderTarget = true},
                                      .storage = gpu::StorageMode::private_});
    if (!texture)
        cannotStart("no textures for the loop");
    return texture;
}

} // namespace

MovieFrames::MovieFrames(const ExportTimeline& timeline, gpu::Device& device, const PixelSize& size)
    : timeline_(timeline), device_(device), size_(size), queue_(device.newCommandQueue()) {
    if (!queue_)
        cannotStart("no command queue");
    auto any = [&](auto holds) {
        return std::any_of(timeline.entries.begin(), timeline.entries.end(), holds);
    };
    if (any([](const auto& entry) { return entry.segment->layout.has_value(); }))
        overlay_ = made<OverlayQuad>(device, "the overlay did not compile");
    if (any([](const auto& entry) { return entry.segment->watermark; }))
        watermark_ = made<Watermark>(device, "the watermark did not compile");
    if (any([](const auto& entry) { return entry.fade > 0; }))
        blend_ = made<LoopBlend>(device, "the loop's crossfade did not compile");
}

void MovieFrames::makeLoopTextures() {
    std::int64_t most = 0;
    for (const ExportTimeline::Entry& entry : timeline_.entries)
        most = std::max(most, keepsState(*entry.segment->program)
                                  ? entry.fade
                                  : std::min<std::int64_t>(entry.fade, 1));
    if (most > 0)
        own_ = frameTexture(device_, size_);
    for (std::int64_t count = 0; count < most; ++count)
        leadIn_.push_back(frameTexture(device_, size_));
}

const gpu::Texture& MovieFrames::scratch() {
    if (!scratch_)
        scratch_ = frameTexture(device_, size_);
    return *scratch_;
}

// Encodes, commits and waits. `frame` counts from the segment's beginning.
template <typename Encode> void MovieFrames::perform(std::int64_t frame, const Encode& encode) {
    auto commands = queue_->commandBuffer();
    const bool isEncoded = commands && encode(*commands);
    if (isEncoded) {
        commands->commit();
        commands->waitUntilCompleted();
    }
    if (!isEncoded || commands->status() != gpu::CommandBufferStatus::completed)
        throw ExportError(ExportError::Render{entry_->first + std::max<std::int64_t>(frame, 0)});
    hitLoopBudget_ |= commands->hitLoopBudget() || pictures_->hitLoopBudget();
}

// Prepares the segment so that `frame` is the next frame to draw: draws and keeps the frames before
// its beginning for a crossfade, and plays a program that takes Inputs from the beginning.
void MovieFrames::begin(const ExportTimeline::Entry& entry, std::int64_t frame,
                        const std::function<void()>& meanwhile) {
    const ShaderProgram& program = *entry.segment->program;
    pictures_.emplace(*entry.segment, SegmentPictures::Stage{.device = device_,
                                                             .queue = *queue_,
                                                             .overlay = overlay_.get(),
                                                             .frame = size_,
                                                             .fps = timeline_.fps});
    entry_ = &entry;
    auto warm = [&](std::int64_t to) {
        if (!pictures_->warm(to, meanwhile))
            throw ExportError(ExportError::Render{entry.first + frame});
    };
    const std::int64_t kept = keepsState(program) ? entry.fade : 0;
    if (kept > 0)
        warm(-kept);
    for (std::int64_t before = 0; before < kept; ++before) {
        meanwhile();
        perform(before - kept, [&](gpu::CommandBuffer& commands) {
            return pictures_->encode(commands, *leadIn_[static_cast<std::size_t>(before)],
                                     before - kept);
        });
    }
    if (entry.segment->timeline.performance()) // prepared frame by frame
        return;
    if (!program.usesInputs()) {
        // After the kept frames the simulation is at the step before the first frame.
        if (kept == 0 || frame > 0)
            warm(frame);
        return;
    }
    if (kept == 0)
        warm(0);
    for (std::int64_t before = 0; before < frame; ++before) {
        meanwhile();
        perform(before, [&](gpu::CommandBuffer& commands) {
            return pictures_->encode(commands, scratch(), before);
        });
    }
}

bool MovieFrames::encodeMix(gpu::CommandBuffer& commands, const gpu::Texture& target,
                            std::int64_t frame) {
    const std::int64_t left = entry_->count - frame;
    const bool isKept = keepsState(*entry_->segment->program);
    const gpu::Texture& leadIn =
        *leadIn_[isKept ? static_cast<std::size_t>(entry_->fade - left) : 0];
    if (!pictures_->encode(commands, *own_, frame) ||
        (!isKept && !pictures_->encode(commands, leadIn, -left)))
        return false;
    auto encoder = commands.renderCommandEncoder({.color = {.texture = &target}});
    if (!encoder)
        return false;
    blend_->draw(*encoder, *own_, leadIn, ownWeight(left, entry_->fade));
    if (entry_->segment->watermark)
        watermark_->draw(*encoder, size_.width, size_.height);
    encoder->endEncoding();
    return true;
}

void MovieFrames::draw(std::int64_t index, const gpu::Texture& target,
                       const std::function<void()>& meanwhile,
                       const std::function<bool(gpu::CommandBuffer&)>& encodeMore) {
    const auto entry =
        std::find_if(timeline_.entries.begin(), timeline_.entries.end(),
                     [&](const ExportTimeline::Entry& one) { return index < one.end(); });
    const std::int64_t frame = index - entry->first;
    if (entry_ != &*entry)
        begin(*entry, frame, meanwhile);
    pictures_->prepare(frame, meanwhile);
    perform(frame, [&](gpu::CommandBuffer& commands) {
        const bool isDrawn =
            entry->count - frame <= entry->fade
                ? encodeMix(commands, target, frame)
                : pictures_->encode(commands, target, frame,
                                    entry->segment->watermark ? watermark_.get() : nullptr);
        return isDrawn && encodeMore(commands);
    });
}

} // namespace tarnwick
