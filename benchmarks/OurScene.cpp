#include "benchmarks/OurScene.h"

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <utility>

namespace tarnwick::bench {

namespace {

constexpr std::int64_t mostSteps = 4; // per frame, as in the saver

FrameMoment momentOf(std::uint32_t frame) {
    return {.time = static_cast<float>(frame) / ShaderAssembler::stepRate,
            .timeDelta = 1.0f / ShaderAssembler::stepRate,
            .frame = frame};
}

} // namespace

OurScene::OurScene(std::shared_ptr<gpu::Device> device, const std::string& episode)
    : device_(std::move(device)), queue_(device_->newCommandQueue()) {
    gpu::TextureDescriptor descriptor;
    descriptor.width = sceneWidth;
    descriptor.height = sceneHeight;
    descriptor.usage.renderTarget = true;
    target_ = device_->newTexture(descriptor);
    program_ = ShaderProgram::compile(Episode::of(episode), *device_, descriptor.format);
    frames_ = ProgramFrames::make(program_, *device_, sceneWidth, sceneHeight);
    if (!queue_ || !target_ || !frames_)
        throw gpu::DeviceError("The device cannot make the objects that the episode requires.");
}

void OurScene::next() {
    auto commands = queue_->commandBuffer();
    gpu::RenderPassDescriptor pass;
    pass.color.texture = target_.get();
    pass.color.load = gpu::LoadAction::clear;
    if (!commands ||
        !frames_->encode(*commands,
                         {.moment = momentOf(frame_++), .values = {}, .stepLimit = mostSteps},
                         {.descriptor = pass}))
        throw gpu::DeviceError("The device cannot make a command buffer.");
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        throw gpu::DeviceError("A frame did not complete.");
}

std::vector<std::uint8_t> OurScene::picture() {
    std::vector<std::uint8_t> bytes(std::size_t{sceneWidth} * sceneHeight * 4);
    target_->getBytes(bytes.data(), sceneWidth * 4, {0, 0, sceneWidth, sceneHeight}, 0);
    return bytes;
}

} // namespace tarnwick::bench
