// What the tests of runs share: a device, episodes, and pictures of them.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/StillRenderer.h"
#include "TarnwickRender/TexturePicture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tarnwick::tests {

// The parts of a particle episode that a test does not care about are left as they are: `count`
// points of a tenth of the picture's height that rest in its middle.
struct ParticleEpisode {
    int count = 1;
    std::string fields = "float2 at;";
    std::string spawn = "q.at = float2(0.5);"; // fills `q`
    std::string update = "";
    std::string place = "return float3(q.at, 0.1);";
    std::string ink = "return float4(1.0);";
    std::string fade = ""; // empty: none

    std::string text() const;
};

inline constexpr std::string_view arguments = "constant Uniforms& u, constant Params& p";

// Red, green, blue in 0..255.
using Color = std::array<int, 3>;
Color colorAt(const Picture& picture, std::size_t x, std::size_t y); // from the upper left

// Skips the test aloud where there is no device.
class Rendering : public testing::Test {
  protected:
    void SetUp() override;
    void withoutValidation(); // opens the device anew

    std::shared_ptr<const ShaderProgram> program(const std::string& episode);
    Picture still(const std::string& episode, std::int64_t width, std::int64_t height,
                  float time = 0, StillNews* news = nullptr);

    // One frame at `time`, with at most `limit` steps.
    Picture frame(ProgramFrames& frames, float time, std::int64_t limit,
                  const ShaderInputs& inputs = ShaderInputs::none());

    std::unique_ptr<gpu::Texture> target(std::uint32_t width, std::uint32_t height);
    // Encodes with `encode(commands)`, commits and waits.
    template <typename Encode> void perform(const Encode& encode) {
        auto commands = queue->commandBuffer();
        ASSERT_TRUE(commands);
        encode(*commands);
        commands->commit();
        commands->waitUntilCompleted();
        EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::completed);
    }

    std::shared_ptr<gpu::Device> device;
    std::unique_ptr<gpu::CommandQueue> queue;
};

} // namespace tarnwick::tests
