#include "tests/TarnwickMSL/RandomPrograms/Trial.h"

#include "TarnwickMSL/Compile.h"
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

// A part of the GPU layer said no.
struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void finish(gpu::CommandBuffer& commands) {
    commands.commit();
    commands.waitUntilCompleted();
    if (commands.status() != gpu::CommandBufferStatus::completed)
        throw Refused("The command buffer did not complete.");
    if (commands.hitLoopBudget())
        throw Refused("The program ran out of its loop budget.");
}

std::string firstDifference(const char* stage, std::uint64_t seed,
                            const std::vector<std::uint32_t>& results, const NativeTrial& native) {
    if (results.empty())
        return "";
    std::uint32_t differing = 0;
    std::string first;
    for (std::uint32_t i = 0; i < trialInputs; i++) {
        const std::uint32_t expected = native(seed, trialInput(i));
        if (results[i] == expected)
            continue;
        if (differing++ == 0)
            first = "input " + std::to_string(i) + " gives " + std::to_string(results[i]) +
                    ", native code " + std::to_string(expected);
    }
    if (differing == 0)
        return "";
    return std::string(stage) + ": " + first + " (" + std::to_string(differing) + " of " +
           std::to_string(trialInputs) + " inputs differ). ";
}

} // namespace

std::unique_ptr<Trial> Trial::make() {
    auto device = gpu::Device::systemDefault();
    auto queue = device ? device->newCommandQueue() : nullptr;
    if (!queue)
        return nullptr;
    return std::unique_ptr<Trial>(new Trial(std::move(device), std::move(queue)));
}

Trial::Trial(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue)
    : device_(std::move(device)), queue_(std::move(queue)) {}

Outcome Trial::run(const std::string& source, Stages stages) {
    Outcome outcome;
    try {
        // However busy the machine is with other work.
        msl::Compilation compilation = msl::compile(source, {.limit = std::chrono::minutes(2)});
        if (compilation.failed)
            throw Refused(compilation.messages);
        const auto library = device_->newLibrary(std::move(compilation.entryPoints));
        if (stages.kernel)
            outcome.kernel = kernelResults(*library);
        if (stages.fragment)
            outcome.fragment = fragmentResults(*library);
    } catch (const std::runtime_error& error) {
        outcome.problem = error.what();
    }
    return outcome;
}

std::vector<std::uint32_t> Trial::kernelResults(const gpu::Library& library) {
    const auto function = library.newFunction("trial_kernel");
    if (!function)
        throw Refused("The program has no trial_kernel.");
    const auto pipeline = device_->newComputePipelineState(*function);
    const auto buffer = device_->newBuffer(trialInputs * sizeof(std::uint32_t));
    auto commands = queue_->commandBuffer();
    auto encoder = commands ? commands->computeCommandEncoder() : std::nullopt;
    if (!buffer || !encoder)
        throw Refused("The device has no memory for a kernel.");
    encoder->setComputePipelineState(*pipeline);
    encoder->setBuffer(*buffer, 0, 0);
    encoder->dispatchThreads({trialInputs, 1, 1}, {64, 1, 1});
    encoder->endEncoding();
    finish(*commands);
    std::vector<std::uint32_t> results(trialInputs);
    std::memcpy(results.data(), buffer->contents(), trialInputs * sizeof(std::uint32_t));
    return results;
}

std::vector<std::uint32_t> Trial::fragmentResults(const gpu::Library& library) {
    const auto vertex = library.newFunction("trial_vertex");
    const auto fragment = library.newFunction("trial_fragment");
    if (!vertex || !fragment)
        throw Refused("The program lacks its vertex or fragment function.");
    gpu::RenderPipelineDescriptor descriptor;
    descriptor.vertex = vertex.get();
    descriptor.fragment = fragment.get();
    descriptor.color.format = gpu::PixelFormat::r32Uint;
    const auto pipeline = device_->newRenderPipelineState(descriptor);
    gpu::TextureDescriptor target;
    target.format = gpu::PixelFormat::r32Uint;
    target.width = target.height = trialSide;
    target.usage.renderTarget = true;
    const auto texture = device_->newTexture(target);
    auto commands = queue_->commandBuffer();
    gpu::RenderPassDescriptor pass;
    pass.color.texture = texture.get();
    pass.color.load = gpu::LoadAction::clear;
    auto encoder = commands && texture ? commands->renderCommandEncoder(pass) : std::nullopt;
    if (!encoder)
        throw Refused("The device has no memory for a picture.");
    encoder->setRenderPipelineState(*pipeline);
    encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
    encoder->endEncoding();
    finish(*commands);
    std::vector<std::uint32_t> results(trialInputs);
    texture->getBytes(results.data(), trialSide * sizeof(std::uint32_t),
                      {0, 0, trialSide, trialSide}, 0);
    return results;
}

std::string Trial::difference(std::uint64_t seed, const NativeTrial& native, Stages stages) {
    const Outcome outcome = run(metalSource(seed), stages);
    if (!outcome.problem.empty())
        return outcome.problem;
    return firstDifference("kernel", seed, outcome.kernel, native) +
           firstDifference("fragment", seed, outcome.fragment, native);
}

} // namespace tarnwick::trials
