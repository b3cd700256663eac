#include "tests/TarnwickMSL/KernelTest.h"

#include "TarnwickGPU/Resources.h"

namespace tarnwick::tests {

void KernelTest::SetUp() {
    device = gpu::Device::systemDefault();
    if (!device)
        GTEST_SKIP() << "There is no Vulkan 1.3 device.";
    queue = device->newCommandQueue();
}

std::unique_ptr<gpu::Library> KernelTest::compiled(const std::string& program) {
    return device->newLibrary("#include <metal_stdlib>\nusing namespace metal;\n" + program);
}

std::unique_ptr<gpu::ComputePipelineState> KernelTest::pipeline(const std::string& program) {
    return device->newComputePipelineState(*compiled(program)->newFunction("check"));
}

std::vector<Bytes> KernelTest::run(const gpu::Library& library, const KernelRun& run,
                                   const std::vector<Bytes>& buffers) {
    const auto state = device->newComputePipelineState(*library.newFunction(run.kernel));
    std::vector<std::unique_ptr<gpu::Buffer>> bound;
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*state);
    for (const Bytes& bytes : buffers) {
        bound.push_back(device->newBuffer(bytes.size()));
        std::memcpy(bound.back()->contents(), bytes.data(), bytes.size());
        encoder->setBuffer(*bound.back(), 0, static_cast<std::uint32_t>(bound.size() - 1));
    }
    for (std::size_t n = 0; n < run.lengths.size(); ++n)
        encoder->setThreadgroupMemoryLength(static_cast<std::uint32_t>(run.lengths[n]),
                                            static_cast<std::uint32_t>(n));
    encoder->setTexture(run.texture, 0);
    encoder->setSamplerState(run.sampler, 0);
    encoder->dispatchThreads(run.grid, run.threadgroup);
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::completed);
    std::vector<Bytes> after;
    for (const auto& buffer : bound) {
        auto* first = static_cast<const unsigned char*>(buffer->contents());
        after.emplace_back(first, first + buffer->length());
    }
    return after;
}

} // namespace tarnwick::tests
