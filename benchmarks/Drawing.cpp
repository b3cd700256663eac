#include "benchmarks/Drawing.h"

#include "TarnwickRender/Program/FrameUniforms.h"
#include "benchmarks/Twin.h"

#include <utility>

namespace tarnwick::bench {

namespace {

constexpr FrameMoment moment{.time = 3.25f, .timeDelta = 1.0f / 30, .frame = 97};

} // namespace

std::unique_ptr<Drawing> Drawing::make() {
    auto device = gpu::Device::systemDefault();
    if (!device)
        return nullptr;
    auto queue = device->newCommandQueue();
    gpu::TextureDescriptor descriptor;
    descriptor.width = drawWidth;
    descriptor.height = drawHeight;
    descriptor.usage.renderTarget = true;
    auto target = device->newTexture(descriptor);
    if (!queue || !target)
        return nullptr;
    return std::unique_ptr<Drawing>(
        new Drawing(std::move(device), std::move(queue), std::move(target)));
}

Drawing::Drawing(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue,
                 std::unique_ptr<gpu::Texture> target)
    : device_(std::move(device)), queue_(std::move(queue)), target_(std::move(target)) {}

Drawing::Pipeline Drawing::pipeline(const gpu::Function& vertex, const gpu::Function& fragment) {
    gpu::RenderPipelineDescriptor descriptor;
    descriptor.vertex = &vertex;
    descriptor.fragment = &fragment;
    descriptor.color.format = target_->descriptor().format;
    return device_->newRenderPipelineState(descriptor);
}

// One picture per command buffer, each completed before the next: within one pass the CPU driver
// omits pixels that a later opaque draw covers, unless the shader writes memory.
void Drawing::draw(const gpu::RenderPipelineState& pipeline, const Case& one) {
    auto commands = queue_->commandBuffer();
    gpu::RenderPassDescriptor pass;
    pass.color.texture = target_.get();
    pass.color.load = gpu::LoadAction::clear;
    auto encoder = commands ? commands->renderCommandEncoder(pass) : std::nullopt;
    if (!encoder)
        throw gpu::DeviceError("The device cannot make a command buffer.");
    const TWUniforms frame = frameUniforms(moment, drawWidth, drawHeight);
    encoder->setRenderPipelineState(pipeline);
    encoder->setFragmentBytes(&frame, sizeof(frame), 0);
    encoder->setFragmentBytes(one.values.data(), one.values.size() * sizeof(float), 1);
    encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed)
        throw gpu::DeviceError("A picture of " + one.name + " did not complete.");
}

std::vector<std::uint8_t> Drawing::picture(const gpu::RenderPipelineState& pipeline,
                                           const Case& one) {
    draw(pipeline, one);
    std::vector<std::uint8_t> bytes(std::size_t{drawWidth} * drawHeight * 4);
    target_->getBytes(bytes.data(), drawWidth * 4, {0, 0, drawWidth, drawHeight}, 0);
    return bytes;
}

DrawTime Drawing::time(const Case& one, int rounds) {
    const auto library = device_->newLibrary(one.program);
    const auto twins = device_->newLibrary({compiledTwin(one.twin, one.values.size())});
    const auto vertex = library->newFunction(ShaderAssembler::vertexName);
    const auto fragment = library->newFunction(ShaderAssembler::fragmentName);
    const auto twin = twins->newFunction("twin");
    if (!vertex || !fragment || !twin)
        throw gpu::DeviceError("A function of " + one.name + " is missing.");
    const Pipeline ours = pipeline(*vertex, *fragment), theirs = pipeline(*vertex, *twin);

    const PictureDifference pictures = difference(picture(*ours, one), picture(*theirs, one));
    return {inTurns(
                rounds, [&] { draw(*ours, one); }, [&] { draw(*theirs, one); }),
            pictures};
}

} // namespace tarnwick::bench
