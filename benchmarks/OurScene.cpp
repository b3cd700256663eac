#include "benchmarks/OurScene.h"

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <utility>

namespace tarnwick::bench {

namespace {

constexpr std::int64_t mostSteps = 4; // a frame, as in the saver

TWUniforms uniformsOf(std::uint32_t frame) {
    return {.resolution = {static_cast<float>(sceneWidth), static_cast<float>(sceneHeight)},
            .time = static_cast<float>(frame) / ShaderAssembler::stepRate,
            .timeDelta = 1.0f / ShaderAssembler::stepRate,
            .mouse = {sceneWidth * 0.5f, sceneHeight * 0.5f},
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
    program_ = ShaderProgram::compile(episode, *device_, descriptor.format);
    run_ = ShaderRun::make(program_, *device_, sceneWidth, sceneHeight);
    if (!queue_ || !target_ || !run_)
        throw gpu::DeviceError("The device cannot make what the episode needs.");
}

void OurScene::next() {
    const TWUniforms uniforms = uniformsOf(frame_++);
    auto commands = queue_->commandBuffer();
    if (!commands)
        throw gpu::DeviceError("The device gives no command buffer.");
    run_->prepare(uniforms, *commands, {}, mostSteps);
    gpu::RenderPassDescriptor pass;
    pass.color.texture = target_.get();
    pass.color.load = gpu::LoadAction::clear;
    if (auto encoder = commands->renderCommandEncoder(pass)) {
        program_->draw(*encoder, uniforms, {}, run_.get());
        encoder->endEncoding();
    }
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
