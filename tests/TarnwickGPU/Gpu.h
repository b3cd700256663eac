// The fixture of the layer's tests: a device, and entry points made from GLSL, which are faster to
// make than by the compiler.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Resources.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick::tests {

// `body` follows #version and whatever the layer's conventions declare for every module:
// loopBudget as specialisation constant 0 and a kernel's threadgroup size as 1 to 3.
msl::EntryPoint glsl(msl::Stage stage, const std::string& name, const std::string& body,
                     std::vector<msl::Resource> resources = {});

// A triangle that covers the target; hands `vec2 at`, [0, 1] from the upper left, to the fragment.
msl::EntryPoint wholeTarget();

// Skips the test if there is no device.
class Gpu : public testing::Test {
  protected:
    void SetUp() override;
    void withoutValidation(); // opens the device anew

    std::unique_ptr<gpu::RenderPipelineState>
    pipeline(const msl::EntryPoint& vertex, const msl::EntryPoint& fragment,
             gpu::RenderPipelineDescriptor descriptor = {
                 .color = {.format = gpu::PixelFormat::rgba8Unorm}});
    std::unique_ptr<gpu::ComputePipelineState> pipeline(const msl::EntryPoint& kernel);
    std::unique_ptr<gpu::Texture> target(std::uint32_t width, std::uint32_t height,
                                         gpu::PixelFormat format = gpu::PixelFormat::rgba8Unorm);

    // Commits, and waits for completion.
    static void finish(gpu::CommandBuffer& commands);
    // A command buffer of one render pass, finished.
    template <typename Encode>
    gpu::CommandBuffer render(const gpu::RenderPassDescriptor& pass, const Encode& encode) {
        auto commands = queue->commandBuffer();
        auto encoder = commands->renderCommandEncoder(pass);
        encode(*encoder);
        encoder->endEncoding();
        finish(*commands);
        return std::move(*commands);
    }
    // Draws three vertices over a cleared target and waits.
    void draw(const gpu::RenderPipelineState& state, const gpu::Texture& texture,
              const gpu::Texture* fragmentTexture = nullptr);

    std::shared_ptr<gpu::Device> device;
    std::unique_ptr<gpu::CommandQueue> queue;
};

using Pixel = std::array<std::uint8_t, 4>;
Pixel pixelAt(const gpu::Texture& texture, std::uint32_t x, std::uint32_t y);

} // namespace tarnwick::tests
