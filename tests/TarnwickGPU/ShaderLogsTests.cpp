// Logs of shaders (os_log), printed by the validation layer's debug printf.
#include "TarnwickGPU/Vulkan/LayerMessages.h"
#include "tests/TarnwickGPU/Gpu.h"

#include <cstdlib>

namespace tarnwick::tests {

namespace {

constexpr const char* program = R"(
#include <metal_stdlib>
#include <metal_logging>
using namespace metal;
kernel void tell(device float* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    if (i == 2) os_log_default.log("thread %u: %.2f, %v2d, %ld 100%%", i, out[i], int2(-1, 7), 1L << 40);
    out[i] = 3;
}
)";

class ShaderLogsTest : public Gpu {
  protected:
    // The lines on standard error of four threads whose numbers are 0.5.
    std::string lines() {
        testing::internal::CaptureStderr();
        device = gpu::Device::systemDefault();
        queue = device->newCommandQueue();
        const auto library = device->newLibrary(program);
        const auto state = device->newComputePipelineState(*library->newFunction("tell"));
        const auto out = device->newBuffer(16);
        std::fill_n(static_cast<float*>(out->contents()), 4, 0.5f);
        auto commands = queue->commandBuffer();
        auto encoder = commands->computeCommandEncoder();
        encoder->setComputePipelineState(*state);
        encoder->setBuffer(*out, 0, 0);
        encoder->dispatchThreads({4, 1, 1}, {4, 1, 1});
        encoder->endEncoding();
        finish(*commands);
        EXPECT_EQ(*static_cast<const float*>(out->contents()), 3);
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(ShaderLogsTest, arePrintedOnlyIfTheEnvironmentAsksForThem) {
    EXPECT_EQ(lines(), "");
    setenv("TARNWICK_SHADER_LOGS", "1", 1);
    EXPECT_EQ(lines(), "Shader log: thread 2: 0.50, -1, 7, 1099511627776 100%\n");
    unsetenv("TARNWICK_SHADER_LOGS");
}

// Versions of the layer put different words before a log, which may contain their separators.
TEST(LayerMessages, giveTheLogThatTheShaderWrote) {
    for (const std::string before :
         {"Validation Information: [ UNASSIGNED-DEBUG-PRINTF ] Object 0: handle = 0x55e8f2860e10, "
          "type = VK_OBJECT_TYPE_DEVICE; | MessageID = 0x92394c89 | ",
          "vkQueueSubmit2(): pSubmits[0] DebugPrintf:\n"})
        for (const std::string log : {"thread 2", "a | b\nc", "| MessageID = 3 | x", ""})
            EXPECT_EQ(gpu::logOf(before + log), log) << before;
}

} // namespace

} // namespace tarnwick::tests
