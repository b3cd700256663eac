#include "tests/TarnwickMSL/KernelRun.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tarnwick::tests {

std::vector<std::array<float, 4>>
kernelResults(gpu::Device& device, gpu::CommandQueue& queue, const gpu::Library& library,
              const std::string& kernel, std::span<const std::byte> inputs,
              const gpu::Texture* texture, const gpu::SamplerState* sampler) {
    const auto pipeline = device.newComputePipelineState(*library.newFunction(kernel));
    auto out = device.newBuffer(inputs.size()), in = device.newBuffer(inputs.size());
    std::memcpy(in->contents(), inputs.data(), inputs.size());
    auto commands = queue.commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*pipeline);
    encoder->setBuffer(*out, 0, 0);
    encoder->setBuffer(*in, 0, 1);
    encoder->setTexture(texture, 0);
    encoder->setSamplerState(sampler, 0);
    std::vector<std::array<float, 4>> results(inputs.size() / sizeof(std::array<float, 4>));
    encoder->dispatchThreads({static_cast<std::uint32_t>(results.size()), 1, 1}, {64, 1, 1});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::completed);
    std::memcpy(results.data(), out->contents(), inputs.size());
    return results;
}

} // namespace tarnwick::tests
